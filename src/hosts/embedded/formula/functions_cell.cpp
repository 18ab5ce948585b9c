// CELL: what is known of a cell beside its value.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "formula/functions.h"
#include "formula/lexical.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

// The cell that is asked for.
struct Subject {
  const WorkbookModel& model;
  const SheetModel& sheet;
  CellAddress cell;
  Scalar value;

  const CellFormat& format() const { return model.styles[sheet.StyleOf(cell)]; }
  NumberFormat number_format() const { return NumberFormat(format().number_format); }
};

// "[plan.xlsx]Data", in quotes where they are needed.
std::string QualifiedSheet(const Subject& subject) {
  const std::string& book = subject.model.file_name;
  const std::string& sheet = subject.sheet.name;
  const bool quotes = NeedsQuotes(sheet) || (!book.empty() && NeedsQuotes(book));
  std::string text = book.empty() ? sheet : "[" + book + "]" + sheet;
  if (!quotes) return text;
  std::string quoted = "'";
  for (char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
  return quoted + "'";
}

Operand Address(Call& call, const Subject& subject) {
  const CellAddress& cell = subject.cell;
  std::string text = "$" + ColumnLetters(cell.column) + "$" + std::to_string(cell.row);
  if (subject.sheet.id != call.evaluator().position().sheet) {
    text = QualifiedSheet(subject) + "!" + text;
  }
  return call.MakeText(std::move(text));
}

Operand Color(Call&, const Subject& subject) {
  return Scalar::Number(subject.number_format().ColorsNegatives());
}

Operand ColumnOf(Call&, const Subject& subject) { return Scalar::Number(subject.cell.column); }
Operand RowOf(Call&, const Subject& subject) { return Scalar::Number(subject.cell.row); }
Operand Contents(Call&, const Subject& subject) { return subject.value; }

Operand FileName(Call& call, const Subject& subject) {
  const WorkbookModel& model = subject.model;
  if (model.file_name.empty()) return Scalar::Text("");
  return call.MakeText(model.folder + "[" + model.file_name + "]" + subject.sheet.name);
}

Operand Format(Call& call, const Subject& subject) {
  return call.MakeText(subject.format().number_format.empty()
                           ? std::string("G")
                           : subject.number_format().Abbreviation());
}

Operand Parentheses(Call&, const Subject& subject) {
  return Scalar::Number(subject.number_format().HasParentheses());
}

// How a text is aligned.
Operand Prefix(Call&, const Subject& subject) {
  if (!subject.value.IsText()) return Scalar::Text("");
  switch (subject.format().alignment) {
    case TextAlignment::kRight:
      return Scalar::Text("\"");
    case TextAlignment::kCenter:
      return Scalar::Text("^");
    case TextAlignment::kFill:
      return Scalar::Text("\\");
    default:
      return Scalar::Text("'");
  }
}

Operand Protect(Call&, const Subject& subject) { return Scalar::Number(subject.format().locked); }

Operand Type(Call&, const Subject& subject) {
  const Scalar& value = subject.value;
  return Scalar::Text(value.IsBlank() ? "b" : value.IsText() ? "l" : "v");
}

std::string_view Attribute(std::string_view attributes, std::string_view name) {
  const std::string start = " " + std::string(name) + "=\"";
  const std::size_t at = attributes.find(start);
  if (at == std::string_view::npos) return {};
  attributes.remove_prefix(at + start.size());
  return attributes.substr(0, attributes.find('"'));
}

// In whole characters of the default font, 0 for a hidden column.
Operand Width(Call&, const Subject& subject) {
  double width = subject.sheet.standard_column_width;
  for (const ColumnFormat& run : subject.sheet.column_formats) {
    if (subject.cell.column < run.first || subject.cell.column > run.last) continue;
    const std::string_view hidden = Attribute(run.attributes, "hidden");
    if (hidden == "1" || hidden == "true") return Scalar::Number(0);
    const std::string_view text = Attribute(run.attributes, "width");
    std::from_chars(text.data(), text.data() + text.size(), width);
  }
  // Files count the margins in, which measure five pixels.
  constexpr double kMargins = 5;
  return Scalar::Number(
      std::max(0.0, std::round(width - kMargins / subject.model.styles.max_digit_width)));
}

struct InfoType {
  std::string_view name;
  Operand (*tell)(Call& call, const Subject& subject);
};

constexpr InfoType kInfoTypes[] = {
    {"ADDRESS", Address},
    {"COL", ColumnOf},
    {"COLOR", Color},
    {"CONTENTS", Contents},
    {"FILENAME", FileName},
    {"FORMAT", Format},
    {"PARENTHESES", Parentheses},
    {"PREFIX", Prefix},
    {"PROTECT", Protect},
    {"ROW", RowOf},
    {"TYPE", Type},
    {"WIDTH", Width},
};

// Of the reference's first cell.
Operand CellInformation(Call& call) {
  Evaluator& evaluator = call.evaluator();
  const std::string kind = UpperAscii(call.Text(0));
  if (call.failed()) return {};
  if (!call.Given(1)) {
    evaluator.Stop("CELL without a reference is not supported");
    return {};
  }
  if (call[1].IsScalar() && call.FailIfError(call[1].scalar)) return {};
  if (!call[1].IsBlock()) return Scalar::Error(CellError::kValue);
  for (const InfoType& type : kInfoTypes) {
    if (kind != type.name) continue;
    const auto& [sheet, area] = call[1].block;
    const CellAddress cell{area.first_row, area.first_column};
    // Only these depend on the value, which may be the formula's own otherwise.
    const bool needs_value = kind == "CONTENTS" || kind == "TYPE" || kind == "PREFIX";
    const Scalar value = needs_value ? evaluator.ReadCell(sheet, cell) : Scalar::Blank();
    return type.tell(call, {evaluator.model(), *evaluator.model().sheets[sheet], cell, value});
  }
  return Scalar::Error(CellError::kValue);
}

constexpr FunctionEntry kFunctions[] = {
    {"CELL", 1, 2, "vr", CellInformation, kVolatile},
};

}  // namespace

std::span<const FunctionEntry> CellFunctions() { return kFunctions; }

}  // namespace vantora::embedded
