#include "calculation/test_book.h"

#include <charconv>

#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

std::string NumberText(double number) {
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

}  // namespace

TestBook::TestBook(const std::vector<std::string>& sheets)
    : model_(std::make_unique<WorkbookModel>()), calculator_(*model_) {
  for (const std::string& name : sheets) model_->AddSheet(name);
}

TestBook::Place TestBook::Find(std::string_view place) const {
  Place found;
  if (auto mark = place.find('!'); mark != std::string_view::npos) {
    found.sheet = model_->IdOf(place.substr(0, mark)).value();
    place = place.substr(mark + 1);
  }
  found.area = ParseA1(place).value();
  return found;
}

CellValue TestBook::ValueOf(std::string_view content) const {
  if (content.empty()) return CellValue::Blank();
  double number = 0;
  auto [end, error] = std::from_chars(content.data(), content.data() + content.size(), number);
  if (error == std::errc() && end == content.data() + content.size()) {
    return CellValue::Number(number);
  }
  return CellValue::Text(model_->strings.Intern(content));
}

void TestBook::Store(int sheet, CellAddress cell, std::string_view content) {
  SheetModel& on = *model_->sheets[sheet];
  if (content.starts_with('=')) {
    on.cells.SetFormula(cell, on.formulas.Intern(ParseFormula(content.substr(1), cell, *model_)));
  } else {
    on.cells.SetConstant(cell, ValueOf(content));
  }
}

void TestBook::Put(std::string_view place, std::string_view content) {
  auto [sheet, area] = Find(place);
  SheetModel& on = *model_->sheets[sheet];
  CellAddress first{area.first_row, area.first_column};
  Store(sheet, first, content);
  for (int column = area.first_column; column <= area.last_column; ++column) {
    for (int row = area.first_row; row <= area.last_row; ++row) {
      if (content.starts_with('=')) {
        on.cells.SetFormula({row, column}, on.cells.Get(first).formula);
      } else {
        Store(sheet, {row, column}, content);
      }
    }
  }
  calculator_.Changed(sheet, area);
}

void TestBook::Load(std::string_view place, std::string_view content, std::string_view value) {
  auto [sheet, area] = Find(place);
  SheetModel& on = *model_->sheets[sheet];
  CellAddress first{area.first_row, area.first_column};
  bool is_formula = content.starts_with('=');
  FormulaId formula =
      is_formula ? on.formulas.Intern(ParseFormula(content.substr(1), first, *model_)) : 0;
  for (int column = area.first_column; column <= area.last_column; ++column) {
    for (int row = area.first_row; row <= area.last_row; ++row) {
      on.cells.Load({row, column}, ValueOf(is_formula ? value : content), formula, 0);
    }
  }
}

void TestBook::PutArray(std::string_view place, std::string_view formula) {
  auto [sheet, area] = Find(place);
  Store(sheet, {area.first_row, area.first_column}, formula);
  model_->sheets[sheet]->arrays.push_back({area});
  calculator_.Changed(sheet, area);
}

void TestBook::AddName(std::string name, std::string refers_to, int scope) {
  model_->names.push_back({std::move(name), scope, std::move(refers_to)});
  calculator_.NamesChanged();
}

void TestBook::AddTable(std::string name, std::string_view area,
                        const std::vector<std::string>& columns, int total_rows) {
  const Place place = Find(area);
  CellAddress header = place.cell();
  for (const std::string& column : columns) {
    Store(place.sheet, header, column);
    ++header.column;
  }
  model_->tables.push_back({std::move(name), place.sheet, place.area, 1, total_rows, columns});
  calculator_.NamesChanged();
}

void TestBook::InsertColumns(std::string_view sheet, std::string_view column, int count) {
  calculator_.InsertColumns({model_->IdOf(sheet).value(), ColumnNumber(column).value(), count});
}

std::string TestBook::TextOf(const CellValue& value) const {
  switch (value.kind) {
    case CellKind::kNumber:
      return NumberText(value.number);
    case CellKind::kText:
      return model_->strings[value.text];
    case CellKind::kBoolean:
      return value.boolean ? "TRUE" : "FALSE";
    case CellKind::kError:
      return std::string(NameOfError(value.error));
    default:
      return "";
  }
}

std::string TestBook::Value(std::string_view place) {
  Place found = Find(place);
  if (!calculator_.EnsureCalculated(found.sheet, found.cell())) return "stale";
  return Stored(place);
}

std::string TestBook::Stored(std::string_view place) const {
  Place found = Find(place);
  return TextOf(model_->sheets[found.sheet]->cells.Get(found.cell()).value);
}

bool TestBook::IsMarked(std::string_view place) const {
  Place found = Find(place);
  return model_->sheets[found.sheet]->cells.Get(found.cell()).flags & kNeedsCalculation;
}

std::string TestBook::FormulaIn(std::string_view place) const {
  Place found = Find(place);
  SheetModel& sheet = *model_->sheets[found.sheet];
  FormulaId formula = sheet.cells.Get(found.cell()).formula;
  return formula ? "=" + FormulaText(sheet.formulas[formula], found.cell(), *model_) : "";
}

std::string TestBook::Dump() {
  std::string lines;
  for (const auto& sheet : model_->sheets) {
    for (int column = 1; column <= sheet->cells.LastColumn(); ++column) {
      sheet->cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        if (!cell.has_content()) return;
        std::string place = sheet->name + "!" + ToA1(CellAddress{row, column});
        lines += place + " " + FormulaIn(place) + " -> " + Value(place) + "\n";
      });
    }
  }
  for (const DefinedName& name : model_->names) lines += name.name + " " + name.refers_to + "\n";
  return lines;
}

std::unique_ptr<TestBook> TestBook::Retyped() const {
  std::vector<std::string> names;
  for (const auto& sheet : model_->sheets) names.push_back(sheet->name);
  auto copy = std::make_unique<TestBook>(names);
  copy->model_->names = model_->names;
  copy->model_->tables = model_->tables;
  for (const auto& sheet : model_->sheets) {
    auto& to = *copy->model_->sheets[sheet->id];
    to.arrays = sheet->arrays;
    for (int column = 1; column <= sheet->cells.LastColumn(); ++column) {
      sheet->cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        if (!cell.has_content()) return;
        std::string place = sheet->name + "!" + ToA1(CellAddress{row, column});
        copy->Store(sheet->id, {row, column}, cell.formula ? FormulaIn(place) : TextOf(cell.value));
      });
    }
    copy->calculator_.Changed(sheet->id, {1, 1, kMaxRow, kMaxColumn});
  }
  return copy;
}

}  // namespace vantora::embedded
