#include "maintenance/planning_spinners.h"

#include <cctype>
#include <cmath>

#include "core/cell_place.h"
#include "core/coercion.h"
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"

namespace vantora {
namespace {

using host::XlCalculation;
using host::XlCutCopyMode;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

constexpr int kLastYear = model::kLastPlanningColumn;
constexpr int kSaveCells = 10;

bool IsDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

std::string ToUtf8(char32_t c) {
  if (c < 0x80) return {static_cast<char>(c)};
  std::string text;
  const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
  constexpr unsigned char kLeads[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLeads[more] | (c >> (6 * more)));
  for (int i = more - 1; i >= 0; --i) text += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
  return text;
}

// The cell of the sheet that an address like "$C$12" or "'Plan A'!$C$12" names. Throws what the
// host reports for an address that is none, or one on another sheet.
host::RangePtr CellAt(host::Worksheet& sheet, const std::string& address) {
  std::string prefix;
  std::string cell = address;
  if (std::size_t mark = address.rfind('!'); mark != std::string::npos) {
    prefix = address.substr(0, mark);
    cell = address.substr(mark + 1);
    if (prefix.size() > 1 && prefix.front() == '\'') prefix = prefix.substr(1, prefix.size() - 2);
    for (std::size_t at = 0; (at = prefix.find("''", at)) != std::string::npos; ++at) {
      prefix.erase(at, 1);
    }
  }
  std::erase(cell, '$');
  int column = 0;
  std::size_t at = 0;
  for (; at < cell.size() && at < 3 && std::isalpha(static_cast<unsigned char>(cell[at])); ++at) {
    column = column * 26 + std::toupper(static_cast<unsigned char>(cell[at])) - 'A' + 1;
  }
  const std::string digits = cell.substr(at);
  const bool is_cell =
      column > 0 && !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
  const std::optional<int> row = is_cell ? TextToInteger(digits) : std::nullopt;
  if (!row || (!prefix.empty() && !EqualsIgnoreCase(prefix, sheet.Name()))) {
    throw HostError(
        HostError::kApplicationDefined,
        "Method 'Range' of object '_Worksheet' failed: the spin button's linked cell \"" + address +
            "\" is no cell of the sheet \"" + sheet.Name() + "\".");
  }
  return sheet.Cells(*row, column);
}

// The row as the address's text tells it: the number from its first digit on. The model's rule; a
// digit in a sheet's name before the cell is taken for the row.
int RowInText(const std::string& address) {
  const std::size_t digit = address.find_first_of("0123456789");
  if (digit == std::string::npos) return 0;
  const std::optional<int> row = NumberToInteger(LeadingNumber(address.substr(digit)));
  if (!row) throw MacroError(HostError::kOverflow, "Overflow: the row in \"" + address + "\".");
  return *row;
}

bool IsAmountToChange(const Value& value) { return IsAmount(value) && ToNumber(value) != 0; }

double Finite(double amount) {
  if (std::isfinite(amount)) return amount;
  throw MacroError(HostError::kOverflow, "Overflow: an amount gets too large by inflation.");
}

}  // namespace

// A button at 0 stands where it stands at 1.
bool clsPlanningSpinners::Block::moves() const {
  return previous != value && !(previous + value == 1 && previous * value == 0);
}

int clsPlanningSpinners::Block::steps() const {
  if (previous >= value) return value == 0 ? previous - 1 : previous - value;
  return previous == 0 ? value - 1 : value - previous;
}

void clsPlanningSpinners::SpinnerChange() {
  if (!initialized()) return;
  sheet_ = application()->ActiveSheet();
  if (!sheet_) throw MacroError(HostError::kObjectNotSet, "The active sheet is not a worksheet.");
  const std::optional<FlaggedColumns> columns = FindFlaggedColumns();
  if (!columns) return;
  columns_ = *columns;
  row_count_ = sheet_->UsedRange()->RowsCount();
  const Block block = TakeClick();
  if (!block.moves()) return;
  const int steps = ToInteger(block.steps());
  const int inflation_row = FindInflationRow();
  if (inflation_row == 0) {
    Tell("No row is flagged on Planning Sheet as holding inflation values");
    return;
  }
  application()->SetScreenUpdating(false);
  application()->SetCalculation(XlCalculation::kManual);
  for (int row = block.first_row; row <= block.last_row; ++row) {
    const Project project = ReadProject(row, inflation_row);
    if (!project.shifts) continue;
    for (int step = 1; step <= steps; ++step) {
      if (block.moves_later()) {
        MoveLater(project);
      } else {
        MoveEarlier(project);
      }
    }
  }
  application()->SetScreenUpdating(true);
  application()->SetCalculation(XlCalculation::kAutomatic);
}

std::optional<clsPlanningSpinners::FlaggedColumns> clsPlanningSpinners::FindFlaggedColumns() {
  FlaggedColumns found;
  const int column_count = sheet_->UsedRange()->ColumnsCount();
  // The first save column ends the search; of the flag columns before it the last one counts.
  for (int column = 2; column <= column_count && found.save == 0; ++column) {
    const std::string flag = ValueToText(sheet_->Cells(model::kFlagRow, column)->Value());
    if (EqualsIgnoreCase(flag, model::kFlagColumnFlag)) found.flags = column;
    if (EqualsIgnoreCase(flag, model::kSaveColumnFlag)) found.save = column;
  }
  if (found.save == 0) {
    Tell("Missing flag in row 1 to indicate shift-save column");
    return std::nullopt;
  }
  if (found.flags == 0) {
    Tell("Missing flag in row 1 to indicate flag column");
    return std::nullopt;
  }
  return found;
}

clsPlanningSpinners::Block clsPlanningSpinners::TakeClick() {
  const std::string address = sheet_->Shapes(application()->Caller())->LinkedCell();
  const host::RangePtr linked_cell = CellAt(*sheet_, address);
  Block block;
  block.value =
      IntegerIn({*sheet_, linked_cell->Row(), linked_cell->Column()}, linked_cell->Value());
  block.first_row = RowInText(address) + 1;
  // Without an end row the block runs to the last used row, and the row below serves as its end.
  int end_row = block.first_row;
  while (end_row <= row_count_ &&
         !FindIgnoreCase(ValueToText(FlagOf(end_row)), model::kEndRowFlag)) {
    ++end_row;
  }
  block.last_row = end_row - 1;
  const host::RangePtr stored = sheet_->Cells(end_row, linked_cell->Column());
  block.previous = IntegerIn({*sheet_, end_row, linked_cell->Column()}, stored->Value());
  stored->SetValue(block.value);
  return block;
}

int clsPlanningSpinners::FindInflationRow() {
  for (int row = model::kFlagRow + 1; row <= row_count_; ++row) {
    if (EqualsIgnoreCase(ValueToText(FlagOf(row)), model::kInflationRowFlag)) return row;
  }
  return 0;
}

clsPlanningSpinners::Project clsPlanningSpinners::ReadProject(int row, int inflation_row) {
  Project project{
      .row = row, .inflation_row = inflation_row, .first_column = model::kFirstPlanningColumn};
  const auto tell_invalid = [&](const std::string& flag) {
    Tell("Invalid project row flag value of " + flag + " in row " + std::to_string(row));
  };
  const Value flag = FlagOf(row);
  if (flag.IsError()) {
    tell_invalid(ValueToText(flag));  // once, not letter by letter
    return project;
  }
  const std::u32string letters = CaseFolded(TrimBlanks(ValueToText(flag)));
  for (std::size_t at = 0; at < letters.size(); ++at) {
    switch (letters[at]) {
      case U'f':
        project.shifts = project.inflates = false;
        break;
      case U's':
        project.shifts = true;
        break;
      case U'i':
        project.shifts = project.inflates = true;
        if (at + 1 < letters.size() && IsDigit(letters[at + 1])) {
          project.inflation_row = inflation_row + static_cast<int>(letters[++at] - U'0') - 1;
        }
        break;
      case U'n':
        project.shifts = true;
        project.inflates = false;
        break;
      case U'c':
        project.first_column = model::kCurrentYearColumn;
        break;
      case U' ':
        break;
      default:
        tell_invalid(ToUtf8(letters[at]));
    }
  }
  return project;
}

void clsPlanningSpinners::MoveLater(const Project& project) {
  const int row = project.row;
  const int first = project.first_column;
  const int save = columns_.save;
  Move(row, save, save + kSaveCells - 2, save + 1);
  Move(row, kLastYear, kLastYear, save);  // the year that falls off the end is parked
  MoveFormulas(row, first, kLastYear - 1, first + 1);
  Empty(row, first);
  EndCopy();
  if (!project.inflates) return;
  for (int column = first + 1; column <= kLastYear; ++column) {
    const host::RangePtr cell = sheet_->Cells(row, column);
    const Value amount = cell->Value();
    if (!IsAmountToChange(amount)) continue;
    const double factor = Factor(project, column);
    cell->SetValue(Finite(ToNumber(amount) * factor));
  }
}

void clsPlanningSpinners::MoveEarlier(const Project& project) {
  constexpr int kDivisionByZero = 11;
  const int row = project.row;
  const int first = project.first_column;
  const int save = columns_.save;
  MoveFormulas(row, first + 1, kLastYear, first);
  EndCopy();
  if (project.inflates) {
    for (int column = first; column < kLastYear; ++column) {
      const host::RangePtr cell = sheet_->Cells(row, column);
      const Value amount = cell->Value();
      if (!IsAmountToChange(amount)) continue;
      // The amount was inflated for the year that it leaves.
      const double factor = Factor(project, column + 1);
      if (factor == 0) {
        throw MacroError(kDivisionByZero, "Division by zero: the inflation factor in " +
                                              FactorPlace(project, column + 1).Name() +
                                              " is 0. Enter one there.");
      }
      cell->SetValue(Finite(ToNumber(amount) / factor));
    }
  }
  Move(row, save, save, kLastYear);  // the parked year comes back
  // The model's rule: eight cells move here where nine moved on the way later, so the last but one
  // keeps its value.
  CopyTowards(row, save + 1, save + kSaveCells - 2, save);
  sheet_->Paste();
  Empty(row, save + kSaveCells - 1);
  EndCopy();
}

CellPlace clsPlanningSpinners::FactorPlace(const Project& project, int column) const {
  return {*sheet_, project.inflation_row, column};
}

double clsPlanningSpinners::Factor(const Project& project, int column) {
  return NumberIn(FactorPlace(project, column),
                  sheet_->Cells(project.inflation_row, column)->Value());
}

Value clsPlanningSpinners::FlagOf(int row) { return sheet_->Cells(row, columns_.flags)->Value(); }

host::RangePtr clsPlanningSpinners::CopyTowards(int row, int first_column, int last_column,
                                                int to_column) {
  sheet_->Range(row, first_column, row, last_column)->Copy();
  host::RangePtr target = sheet_->Cells(row, to_column);
  target->Select();
  return target;
}

void clsPlanningSpinners::Move(int row, int first_column, int last_column, int to_column) {
  CopyTowards(row, first_column, last_column, to_column);
  sheet_->Paste();
  EndCopy();
}

void clsPlanningSpinners::MoveFormulas(int row, int first_column, int last_column, int to_column) {
  CopyTowards(row, first_column, last_column, to_column)
      ->PasteSpecial(XlPasteType::kFormulas, XlPasteSpecialOperation::kNone, false, false);
}

void clsPlanningSpinners::Empty(int row, int column) {
  sheet_->Cells(row, column)->ClearContents();
}

void clsPlanningSpinners::EndCopy() { application()->SetCutCopyMode(XlCutCopyMode::kNone); }

void clsPlanningSpinners::Tell(const std::string& message) {
  services().user_interface.MessageBox(std::string(class_name()) + ": " + message, kOkOnly,
                                       kDefaultTitle);
}

}  // namespace vantora
