#include "package/rename_markup.h"

#include <algorithm>

#include "core/convert.h"
#include "formula/sheet_prefix.h"
#include "package/markup_follower.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// Elements whose text is a formula or a reference, whichever part they stand in.
constexpr std::string_view kFormulaTexts[] = {
    "f",         "formula",  "formula1", "formula2",  "calculatedColumnFormula",
    "nf",        "sqref",    "FmlaLink", "FmlaRange", "totalsRowFormula",
    "FmlaGroup", "FmlaPict", "FmlaTxbx",
};

struct FormulaAttribute {
  std::string_view element;
  std::string_view attribute;
};
constexpr FormulaAttribute kFormulaAttributes[] = {
    {"cfvo", "val"},
    {"controlPr", "linkedCell"},
    {"controlPr", "listFillRange"},
    {"sp", "textlink"},
    {"cameraTool", "cellRange"},
    {"formControlPr", "fmlaLink"},
    {"formControlPr", "fmlaRange"},
    {"formControlPr", "fmlaGroup"},
    {"formControlPr", "fmlaTxbx"},
};

class MarkupRenamer {
 public:
  MarkupRenamer(std::string_view text, const SheetRename& rename, XmlScanner::Mode mode)
      : xml_(text, mode), patch_(text), rename_(rename) {}

  std::optional<std::string> Run() {
    for (Token token = xml_.Next(); token != Token::kDone; token = xml_.Next()) {
      if (token == Token::kStart) {
        ReadStart();
      } else if (token == Token::kText && holds_formula_) {
        Replace(xml_.text(), RenameSheetInText(DecodeXml(xml_.text()), rename_));
      } else if (token == Token::kText && holds_pivot_table_) {
        ReplacePivotTable(xml_.text());
      } else if (token == Token::kEnd) {
        holds_formula_ = holds_pivot_table_ = false;
        if (xml_.local_name() == "pivotSource") in_pivot_source_ = false;
      }
    }
    if (patch_.empty()) return std::nullopt;
    return patch_.Apply();
  }

 private:
  void ReadStart() {
    const std::string_view name = xml_.local_name();
    holds_formula_ = !xml_.is_empty() && std::ranges::count(kFormulaTexts, name) > 0;
    holds_pivot_table_ = in_pivot_source_ && name == "name";
    if (name == "pivotSource" && !xml_.is_empty()) in_pivot_source_ = true;
    for (const FormulaAttribute& rule : kFormulaAttributes) {
      if (rule.element != name) continue;
      const std::string_view piece = AttributeOf(xml_, rule.attribute);
      ReplaceAttribute(piece, RenameSheetInText(DecodeXml(piece), rename_));
    }
    if (name == "hyperlink" && !HasRelationshipId(xml_)) {
      const std::string_view piece = AttributeOf(xml_, "location");
      ReplaceAttribute(piece, RenameSheetInLocation(DecodeXml(piece), rename_));
    }
    // With a relationship the source lies in another file.
    const bool is_source = name == "worksheetSource" || name == "rangeSet" || name == "dataRef";
    if (is_source && !HasRelationshipId(xml_)) {
      const std::string_view piece = AttributeOf(xml_, "sheet");
      if (EqualsIgnoreCase(DecodeXml(piece), rename_.before)) {
        ReplaceAttribute(piece, rename_.after);
      }
    }
  }

  // "[Book.xlsx]Sheet!PivotTable1", where the sheet may need quotes around all before the "!".
  void ReplacePivotTable(std::string_view piece) {
    const std::string text = DecodeXml(piece);
    const std::size_t bracket = text.find(']');
    const std::size_t mark = text.rfind('!');
    if (bracket == std::string::npos || mark == std::string::npos || mark < bracket) return;
    const bool quoted = text[mark - 1] == '\'';
    const std::size_t begin = bracket + 1;
    const std::string sheet = text.substr(begin, mark - begin - (quoted ? 1 : 0));
    if (!EqualsIgnoreCase(WithoutDoubledQuotes(sheet), rename_.before)) return;
    std::string after;
    if (quoted) {
      AppendDoublingQuotes(after, rename_.after);
      after += '\'';
    } else {
      after = rename_.after;
    }
    Replace(piece, text.substr(0, begin) + after + text.substr(mark));
  }

  void Replace(std::string_view piece, const std::optional<std::string>& renamed) {
    if (renamed) patch_.Replace(piece, EncodeXmlText(*renamed));
  }
  void ReplaceAttribute(std::string_view piece, const std::optional<std::string>& renamed) {
    if (renamed) patch_.Replace(piece, EncodeXmlAttribute(*renamed));
  }

  XmlScanner xml_;
  TextPatch patch_;
  const SheetRename& rename_;
  bool holds_formula_ = false;
  bool in_pivot_source_ = false;
  bool holds_pivot_table_ = false;
};

}  // namespace

std::optional<std::string> RenameSheetInMarkup(std::string_view text, const SheetRename& rename,
                                               XmlScanner::Mode mode) {
  return MarkupRenamer(text, rename, mode).Run();
}

}  // namespace vantora::embedded
