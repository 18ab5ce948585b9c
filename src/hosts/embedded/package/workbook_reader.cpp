#include "package/workbook_reader.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <unordered_set>

#include "package/parallel.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"
#include "package/xml_tree.h"

namespace vantora::embedded {
namespace {

using Code = FileError::Code;

constexpr std::string_view kBinaryWorkbook =
    "application/vnd.ms-excel.sheet.binary.macroEnabled.main";
constexpr std::string_view kWorkbookTypes[] = {
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml",
    "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml",
    "application/vnd.ms-excel.sheet.macroEnabled.main+xml",
    "application/vnd.ms-excel.template.macroEnabled.main+xml",
};
constexpr std::string_view kAddInType = "application/vnd.ms-excel.addin.macroEnabled.main+xml";

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string TargetOf(const OpcPackage& package, std::string_view part, std::string_view kind) {
  for (const Relationship& relationship : package.RelationshipsOf(part)) {
    if (relationship.IsType(kind) && !relationship.external) return relationship.target;
  }
  return {};
}

[[noreturn]] void FailWorkbook(Code code, const std::string& part, const std::string& what) {
  throw FileError(code, "The workbook is damaged: " + what + ". Open it in Excel to repair it.",
                  part);
}

// Names of parts are the same without regard to case.
std::string InLowerCase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return text;
}

void ReadSheetList(const OpcPackage& package, pugi::xml_node workbook, WorkbookParts& parts,
                   WorkbookModel& model) {
  // The first one of an id counts.
  std::unordered_map<std::string_view, const Relationship*> relationships;
  for (const Relationship& relationship : package.RelationshipsOf(parts.workbook)) {
    relationships.emplace(relationship.id, &relationship);
  }
  std::unordered_set<std::string> known_parts;
  ForEachChild(Child(workbook, "sheets"), "sheet", [&](pugi::xml_node node) {
    std::string name = node.attribute("name").value();
    auto found = relationships.find(LocalAttribute(node, "id").value());
    auto fail = [&](Code code, const std::string& what) {
      FailWorkbook(code, parts.workbook, what);
    };
    if (name.empty()) fail(Code::kBadContent, "a sheet has no name");
    if (model.IdOf(name)) {
      fail(Code::kBadContent, "two sheets have the name " + Quoted(name));
    }
    if (found == relationships.end() || found->second->external ||
        !package.Has(found->second->target)) {
      fail(Code::kMissingPart, "the part of its sheet " + Quoted(name) + " is missing");
    }
    const Relationship& relationship = *found->second;
    if (!known_parts.insert(InLowerCase(relationship.target)).second) {
      fail(Code::kBadContent, "its sheet " + Quoted(name) + " shares its part with another sheet");
    }
    if (parts.sheets.size() == kMostSheets) {
      fail(Code::kTooLarge, "it has more than " + std::to_string(kMostSheets) + " sheets");
    }
    SheetModel& sheet = model.AddSheet(std::move(name));
    sheet.visibility = VisibilityOf(node.attribute("state").value());
    sheet.is_worksheet = relationship.IsType("worksheet");
    parts.sheets.push_back(relationship.target);
    parts.sheet_relationships.push_back(relationship.id);
  });
  if (parts.sheets.empty()) FailWorkbook(Code::kBadContent, parts.workbook, "it has no sheets");
}

void ReadNames(pugi::xml_node workbook, const std::string& part, WorkbookModel& model) {
  ForEachChild(Child(workbook, "definedNames"), "definedName", [&](pugi::xml_node node) {
    DefinedName name;
    name.name = node.attribute("name").value();
    name.refers_to = node.child_value();
    name.is_hidden = IsTrue(node.attribute("hidden").value());
    if (pugi::xml_attribute local = node.attribute("localSheetId")) {
      name.scope = local.as_int(-1);
      if (name.scope < 0 || name.scope >= static_cast<int>(model.sheets.size())) {
        FailWorkbook(Code::kBadContent, part,
                     "the name " + Quoted(name.name) + " belongs to a sheet that is missing");
      }
    }
    model.names.push_back(std::move(name));
  });
}

void ReadIteration(pugi::xml_node calculation, IterationSettings& iteration) {
  constexpr int kMostRounds = 32767;
  iteration.enabled = IsTrue(calculation.attribute("iterate").value());
  const int rounds = calculation.attribute("iterateCount").as_int(iteration.most_rounds);
  iteration.most_rounds = std::clamp(rounds, 1, kMostRounds);
  const std::string_view change = calculation.attribute("iterateDelta").value();
  double number = 0;
  const auto [end, error] = std::from_chars(change.data(), change.data() + change.size(), number);
  if (error == std::errc() && number >= 0) iteration.largest_change = number;
}

// Reads one <si> (the scanner stands at its start tag) into the pool.
void ReadSharedString(XmlScanner& xml, StringPool& strings, std::string& joined) {
  joined.clear();
  bool plain = true;
  if (!xml.is_empty()) {
    const std::size_t outside = xml.depth();
    while (xml.Next() != XmlScanner::Token::kEnd || xml.depth() > outside) {
      if (xml.token() != XmlScanner::Token::kStart) continue;
      std::string_view name = xml.local_name();
      if (name == "r") {
        plain = false;
      } else if (name == "rPh") {
        // How the text is pronounced; no part of it.
        plain = false;
        xml.SkipElement();
      } else if (name == "t" && !xml.is_empty()) {
        joined += EncodeXmlText(xml.ElementText());
      }
    }
  }
  strings.AddShared(DecodeSpreadsheetText(joined), plain);
}

}  // namespace

Visibility VisibilityOf(std::string_view state) {
  if (state == "hidden") return Visibility::kHidden;
  if (state == "veryHidden") return Visibility::kVeryHidden;
  return Visibility::kVisible;
}

std::string FindWorkbookPart(const OpcPackage& package, const std::string& file_name) {
  std::string part = TargetOf(package, "", "officeDocument");
  std::string type = part.empty() ? "" : package.ContentTypeOf(part);
  if (type == kBinaryWorkbook) {
    throw FileError(Code::kLegacyFormat, Quoted(file_name) +
                                             " is a binary workbook (.xlsb). Save it as .xlsm in "
                                             "Excel.");
  }
  if (type == kAddInType) {
    throw FileError(Code::kUnsupported,
                    Quoted(file_name) + " is an Excel add-in (.xlam), not a workbook.");
  }
  if (std::find(std::begin(kWorkbookTypes), std::end(kWorkbookTypes), type) ==
      std::end(kWorkbookTypes)) {
    throw FileError(Code::kNotAWorkbook, Quoted(file_name) + " is not an Excel workbook.");
  }
  if (!package.Has(part)) {
    throw FileError(Code::kMissingPart,
                    Quoted(file_name) + " is damaged: its part " + Quoted(part) +
                        " is missing. Open it in Excel to repair it.",
                    part);
  }
  return part;
}

WorkbookParts ReadWorkbook(const OpcPackage& package, const std::string& workbook_part,
                           WorkbookModel& model, int& active_sheet) {
  WorkbookParts parts;
  parts.workbook = workbook_part;
  parts.shared_strings = TargetOf(package, workbook_part, "sharedStrings");
  parts.styles = TargetOf(package, workbook_part, "styles");
  parts.theme = TargetOf(package, workbook_part, "theme");
  parts.calculation_chain = TargetOf(package, workbook_part, "calcChain");
  pugi::xml_document document = ParseTree(package, workbook_part);
  pugi::xml_node workbook = Child(document, "workbook");
  if (!workbook) FailWorkbook(Code::kBadContent, workbook_part, "its main part holds no workbook");
  model.date_1904 = IsTrue(Child(workbook, "workbookPr").attribute("date1904").value());
  pugi::xml_node calculation = Child(workbook, "calcPr");
  model.manual_calculation =
      calculation.attribute("calcMode").value() == std::string_view("manual");
  ReadIteration(calculation, model.iteration);
  model.structure_is_protected =
      IsTrue(Child(workbook, "workbookProtection").attribute("lockStructure").value());
  ReadSheetList(package, workbook, parts, model);
  ReadNames(workbook, workbook_part, model);
  pugi::xml_node view = Child(Child(workbook, "bookViews"), "workbookView");
  int active = view.attribute("activeTab").as_int(0);
  active_sheet = std::clamp(active, 0, static_cast<int>(parts.sheets.size()) - 1);
  return parts;
}

void ReadSharedStrings(const OpcPackage& package, const std::string& part, StringPool& strings,
                       std::size_t most) {
  if (part.empty() || !package.Has(part)) return;
  std::string text = package.Read(part);
  try {
    XmlScanner xml(text);
    std::string joined;
    while (xml.Next() != XmlScanner::Token::kDone) {
      if (xml.token() == XmlScanner::Token::kStart && xml.depth() == 1) {
        if (xml.local_name() == "si") {
          if (strings.shared_count() == most) {
            throw XmlError("more than " + std::to_string(most) + " texts", xml.begin(),
                           Code::kTooLarge);
          }
          ReadSharedString(xml, strings, joined);
        } else {
          xml.SkipElement();
        }
      }
    }
  } catch (const XmlError& error) {
    ThrowDamaged(part, error);
  }
}

void ReadSheets(const OpcPackage& package, const WorkbookParts& parts, WorkbookModel& model,
                const std::vector<SheetMarkup*>& markups) {
  SheetRoom room;
  ForEachInParallel(static_cast<int>(parts.sheets.size()), [&](int id) {
    std::string text = package.Read(parts.sheets[id]);
    try {
      ReadSheet(text, model, *model.sheets[id], *markups[id], room);
    } catch (const XmlError& error) {
      ThrowDamaged(parts.sheets[id], error);
    }
  });
}

}  // namespace vantora::embedded
