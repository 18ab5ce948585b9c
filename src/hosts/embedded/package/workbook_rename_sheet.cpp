// A sheet's new name in a package's parts. The list of sheets, the names and the cells' formulas
// follow when the workbook is saved.
#include <array>
#include <set>

#include "package/rename_markup.h"
#include "package/workbook_file.h"
#include "package/workbook_reader.h"

namespace vantora::embedded {
namespace {

// The parts that may name sheets, and those by which they are reached.
constexpr std::array<std::string_view, 9> kReferringParts = {
    "drawing",    "vmlDrawing",          "chart", "chartEx", "chartUserShapes", "table", "ctrlProp",
    "pivotTable", "pivotCacheDefinition"};

bool MayRefer(const Relationship& relationship) {
  for (std::string_view kind : kReferringParts) {
    if (relationship.IsType(kind)) return true;
  }
  return false;
}

// What a new name changes; nothing is written before all of it is known.
class RenamedParts {
 public:
  RenamedParts(OpcPackage& package, const SheetRename& rename)
      : package_(package), rename_(rename) {}

  // Takes in what hangs from the part, which is looked at itself elsewhere.
  void AddPartsOf(const std::string& part) {
    // Copied: reading another part's relationships may move them.
    const std::vector<Relationship> relationships = package_.RelationshipsOf(part);
    for (const Relationship& relationship : relationships) {
      // A link of a shape or a cell to a place in the workbook.
      if (relationship.target.starts_with('#')) {
        if (auto place = RenameSheetInLocation(relationship.target.substr(1), rename_)) {
          targets_.push_back({part, relationship.id, "#" + *place});
        }
      } else if (!relationship.external && MayRefer(relationship) &&
                 package_.Has(relationship.target) && seen_.insert(relationship.target).second) {
        AddPart(relationship);
      }
    }
  }

  void Write() {
    for (auto& [part, text] : texts_) package_.Write(part, std::move(text));
    for (const Target& target : targets_) package_.SetTarget(target.part, target.id, target.text);
  }

 private:
  struct Target {
    std::string part;
    std::string id;
    std::string text;
  };

  void AddPart(const Relationship& relationship) {
    const auto mode =
        relationship.IsType("vmlDrawing") ? XmlScanner::Mode::kLenient : XmlScanner::Mode::kStrict;
    try {
      if (auto text = RenameSheetInMarkup(package_.Read(relationship.target), rename_, mode)) {
        texts_.emplace_back(relationship.target, *std::move(text));
      }
    } catch (const XmlError& error) {
      ThrowDamaged(relationship.target, error);
    }
    AddPartsOf(relationship.target);
  }

  OpcPackage& package_;
  const SheetRename& rename_;
  std::set<std::string> seen_;
  std::vector<std::pair<std::string, std::string>> texts_;
  std::vector<Target> targets_;
};

}  // namespace

void WorkbookFile::RenameSheet(int sheet, const std::string& name) {
  const SheetRename rename{model_.NameOf(sheet), name};
  // What names sheets has to be up to date before it is read with another name.
  for (int id = 0; id < static_cast<int>(sheets_.size()); ++id) FollowInsertions(id);
  FollowInSharedParts();
  RenamedParts parts(*package_, rename);
  std::vector<std::pair<SheetPart*, SheetMarkup>> markups;
  parts.AddPartsOf(parts_->workbook);
  for (SheetPart& part : sheets_) {
    parts.AddPartsOf(part.part);
    try {
      SheetMarkup markup = part.markup;
      bool changed = false;
      for (MarkupElement& element : markup.elements) {
        if (element.text.empty()) continue;
        auto text = RenameSheetInMarkup(element.text, rename);
        if (!text) continue;
        element.text = *std::move(text);
        changed = markup.changed = true;
      }
      if (changed) markups.emplace_back(&part, std::move(markup));
    } catch (const XmlError& error) {
      ThrowDamaged(part.part, error);
    }
  }
  parts.Write();
  for (auto& [part, markup] : markups) part->markup = std::move(markup);
  model_.RenameSheet(sheet, name);
}

}  // namespace vantora::embedded
