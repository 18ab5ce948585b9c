#include "hosts/excel/excel_range.h"

#include <optional>

#include "hosts/excel/call_error.h"
#include "hosts/excel/excel_drawings.h"
#include "hosts/excel/excel_formats.h"
#include "hosts/excel/excel_names.h"
#include "hosts/excel/excel_worksheet.h"

namespace vantora::excel {

IDispatch* DispatchOf(const host::RangePtr& range) {
  auto* excel = dynamic_cast<ExcelRange*>(range.get());
  if (!excel) throw WrongTypeError("The caller", "a range of this Excel");
  return excel->object().dispatch();
}

Variant ExcelRange::OfFirstCell(Member member) const {
  Variant value = object_.Get(member);
  if (value.type() != VT_NULL && !value.IsArray()) return value;
  return object_.Child(Member::kRangeCells, {1, 1}).Get(member);
}

double ExcelRange::NumberOfFirstCell(Member member) const {
  std::optional<double> number = OfFirstCell(member).ToDouble();
  if (!number) throw WrongTypeError(FullNameOf(member), "a number");
  return *number;
}

vantora::Value ExcelRange::Value() {
  std::optional<vantora::Value> value = OfFirstCell(Member::kRangeValue).ToValue();
  if (!value) throw WrongTypeError(FullNameOf(Member::kRangeValue), "a cell value");
  return *std::move(value);
}

void ExcelRange::SetValue(const vantora::Value& value) {
  object_.Put(Member::kRangeValue, Variant::From(value));
}

void ExcelRange::SetValues(std::span<const vantora::Value> rows) {
  object_.Put(Member::kRangeValue, Variant::ColumnOf(rows));
}

std::string ExcelRange::Formula() {
  std::optional<std::string> formula = OfFirstCell(Member::kRangeFormula).ToText();
  if (!formula) throw WrongTypeError(FullNameOf(Member::kRangeFormula), "a text");
  return *std::move(formula);
}

void ExcelRange::SetFormula(std::string_view formula) {
  object_.Put(Member::kRangeFormula, formula);
}

bool ExcelRange::HasFormula() {
  std::optional<bool> has = OfFirstCell(Member::kRangeHasFormula).ToBool();
  if (!has) throw WrongTypeError(FullNameOf(Member::kRangeHasFormula), "True or False");
  return *has;
}

host::WorksheetPtr ExcelRange::Worksheet() {
  return std::make_shared<ExcelWorksheet>(object_.Child(Member::kRangeWorksheet));
}

std::vector<host::RangePtr> ExcelRange::Areas() {
  std::vector<host::RangePtr> areas;
  for (Object& area : object_.Items(Member::kRangeAreas, Member::kAreasCount, Member::kAreasItem)) {
    areas.push_back(std::make_shared<ExcelRange>(std::move(area)));
  }
  return areas;
}

int ExcelRange::Row() { return object_.GetInt(Member::kRangeRow); }

int ExcelRange::Column() { return object_.GetInt(Member::kRangeColumn); }

int ExcelRange::RowsCount() {
  return object_.Child(Member::kRangeRows).GetInt(Member::kRangeCount);
}

int ExcelRange::ColumnsCount() {
  return object_.Child(Member::kRangeColumns).GetInt(Member::kRangeCount);
}

host::RangePtr ExcelRange::Cells(int row, int column) {
  return std::make_shared<ExcelRange>(object_.Child(Member::kRangeCells, {row, column}));
}

host::InteriorPtr ExcelRange::Interior() {
  return std::make_shared<ExcelInterior>(object_.Child(Member::kRangeInterior));
}

host::FontPtr ExcelRange::Font() {
  return std::make_shared<ExcelFont>(object_.Child(Member::kRangeFont));
}

host::BordersPtr ExcelRange::Borders(host::XlBordersIndex index) {
  return std::make_shared<ExcelBorders>(
      object_.Child(Member::kRangeBorders).Child(Member::kBordersItem, {static_cast<int>(index)}));
}

// With a weight, Excel takes no line style: the line is continuous.
void ExcelRange::BorderAround(host::XlBorderWeight weight, int color_index) {
  object_.Call(Member::kRangeBorderAround, {},
               {{L"Weight", static_cast<int>(weight)}, {L"ColorIndex", color_index}});
}

void ExcelRange::SetHorizontalAlignment(host::XlHAlign alignment) {
  object_.Put(Member::kRangeHorizontalAlignment, static_cast<int>(alignment));
}

void ExcelRange::SetWrapText(bool wrap) { object_.Put(Member::kRangeWrapText, wrap); }

// The rows and columns of a range stand for the whole ones; of cells Excel refuses the property.
// Where some are hidden and some are not, it gives Null, which a macro's test takes for False.
bool ExcelRange::RowsHidden() {
  return object_.Child(Member::kRangeRows).Get(Member::kRangeHidden).ToBool().value_or(false);
}

void ExcelRange::SetRowsHidden(bool hidden) {
  object_.Child(Member::kRangeRows).Put(Member::kRangeHidden, hidden);
}

bool ExcelRange::ColumnsHidden() {
  return object_.Child(Member::kRangeColumns).Get(Member::kRangeHidden).ToBool().value_or(false);
}

void ExcelRange::SetColumnsHidden(bool hidden) {
  object_.Child(Member::kRangeColumns).Put(Member::kRangeHidden, hidden);
}

double ExcelRange::Left() { return object_.GetDouble(Member::kRangeLeft); }

double ExcelRange::Width() { return object_.GetDouble(Member::kRangeWidth); }

double ExcelRange::RowHeight() { return NumberOfFirstCell(Member::kRangeRowHeight); }

void ExcelRange::SetRowHeight(double points) { object_.Put(Member::kRangeRowHeight, points); }

double ExcelRange::ColumnWidth() { return NumberOfFirstCell(Member::kRangeColumnWidth); }

void ExcelRange::SetColumnWidth(double characters) {
  object_.Put(Member::kRangeColumnWidth, characters);
}

// Excel knows the level of rows, not of cells.
int ExcelRange::OutlineLevel() {
  return object_.Child(Member::kRangeCells, {1, 1})
      .Child(Member::kRangeRows)
      .GetInt(Member::kRangeOutlineLevel);
}

void ExcelRange::SetOutlineLevel(int level) {
  object_.Child(Member::kRangeRows).Put(Member::kRangeOutlineLevel, level);
}

// Excel refuses the property where no name refers to exactly this range.
host::NamePtr ExcelRange::Name() {
  try {
    std::optional<Object> name = object_.FindChild(Member::kRangeName);
    return name ? std::make_shared<ExcelName>(*std::move(name)) : nullptr;
  } catch (const HostError& error) {
    if (IsRefusal(error)) return nullptr;
    throw;
  }
}

void ExcelRange::Select() { object_.Call(Member::kRangeSelect); }

void ExcelRange::Activate() { object_.Call(Member::kRangeActivate); }

void ExcelRange::Clear() { object_.Call(Member::kRangeClear); }

void ExcelRange::ClearContents() { object_.Call(Member::kRangeClearContents); }

void ExcelRange::ClearFormats() { object_.Call(Member::kRangeClearFormats); }

void ExcelRange::Copy() { object_.Call(Member::kRangeCopy); }

void ExcelRange::Insert(host::XlInsertShiftDirection shift) {
  object_.Call(Member::kRangeInsert, {static_cast<int>(shift)});
}

void ExcelRange::PasteSpecial(host::XlPasteType paste, host::XlPasteSpecialOperation operation,
                              bool skip_blanks, bool transpose) {
  object_.Call(Member::kRangePasteSpecial,
               {static_cast<int>(paste), static_cast<int>(operation), skip_blanks, transpose});
}

host::CommentPtr ExcelRange::AddComment() {
  return std::make_shared<ExcelComment>(object_.Child(Member::kRangeAddComment));
}

void ExcelRange::ListNames() { object_.Call(Member::kRangeListNames); }

void ExcelRange::Sort(const host::RangePtr& key1, const host::RangePtr& key2) {
  constexpr int kAscending = 1;
  constexpr int kGuess = 0;
  constexpr int kFirstCustomOrder = 1;
  constexpr int kTopToBottom = 1;
  constexpr int kNormal = 0;
  object_.Call(Member::kRangeSort, {},
               {{L"Key1", DispatchOf(key1)},
                {L"Order1", kAscending},
                {L"Key2", DispatchOf(key2)},
                {L"Order2", kAscending},
                {L"Header", kGuess},
                {L"OrderCustom", kFirstCustomOrder},
                {L"MatchCase", false},
                {L"Orientation", kTopToBottom},
                {L"DataOption1", kNormal},
                {L"DataOption2", kNormal}});
}

}  // namespace vantora::excel
