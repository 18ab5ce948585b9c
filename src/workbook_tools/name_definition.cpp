#include "workbook_tools/name_definition.h"

#include <algorithm>
#include <utility>

#include "core/cell_place.h"
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"

namespace vantora {
namespace {

constexpr const char* kComponent = "Orvanemcro1";

// Which column of a sheet holds the names, and which columns they refer to.
struct Layout {
  int name_column;
  int first_column;
  int last_column;
};
constexpr Layout kNormalLayout = {9, 1, 28};  // I; A to AB
constexpr Layout kYearsLayout = {26, model::kFirstPlanningColumn, model::kLastPlanningColumn};  // Z

constexpr int kNameInPlace = 0;  // the automatic colour
constexpr int kNameNotCreated = 9;
constexpr double kNameFontSize = 8;

// Of `frmNaming01` and `frmNaming02`.
constexpr int kTakeNameOver = 1;
constexpr int kReplaceRowsName = 1;
constexpr int kKeepRowsName = 2;

std::string WithUnderscores(std::string_view text) {
  std::string name(TrimBlanks(text));
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

// Calls the host; null when it refuses.
template <typename Call>
auto NullWhenRefused(Call call) -> decltype(call()) {
  try {
    return call();
  } catch (const HostError&) {
    return nullptr;
  }
}

std::string TextOf(const host::RangePtr& cell) {
  const Value value = cell->Value();
  if (value.IsError()) {
    const host::WorksheetPtr sheet = cell->Worksheet();
    const CellPlace place{*sheet, cell->Row(), cell->Column()};
    throw HostError(
        HostError::kTypeMismatch,
        "Type mismatch: " + place.Name() +
            " shows an error value, and a name is wanted there. Enter one, or empty it.",
        kComponent);
  }
  return ValueToText(value);
}

template <typename Object>
const Object& Existing(const Object& object) {
  if (!object) {
    throw HostError(HostError::kObjectNotSet, "Object variable or With block variable not set",
                    kComponent);
  }
  return object;
}

}  // namespace

NameDefinitionRun::NameDefinitionRun(host::Application& application, UserInterface& user_interface)
    : user_interface_(user_interface),
      sheet_(Existing(application.ActiveSheet())),
      names_(Existing(application.ActiveWorkbook())->Names()),
      selection_(Existing(application.Selection())) {
  const Layout& layout =
      SheetHasFlag(sheet_, model::kPlanningNamesSheetFlag) ? kYearsLayout : kNormalLayout;
  name_column_ = layout.name_column;
  first_column_ = layout.first_column;
  last_column_ = layout.last_column;
}

void NameDefinitionRun::Run() {
  for (const host::RangePtr& area : selection_->Areas()) {
    const int first_row = area->Row();
    const int last_row = first_row + area->RowsCount() - 1;
    for (int row = first_row; row <= last_row; ++row) {
      if (DefineRow(row) == Next::kCancel) return;
    }
    // After each area the cells of all areas so far are written, and all of them reported: that is
    // the model's rule.
    RewriteCells();
    Report();
  }
}

NameDefinitionRun::Next NameDefinitionRun::DefineRow(int number) {
  Row row{.number = number, .name_cell = sheet_->Cells(number, name_column_), .name = {}};
  row.name = WithUnderscores(TextOf(row.name_cell));
  if (!row.name.empty() && ResolveNameInUse(row) == Next::kCancel) return Next::kCancel;
  const Next next = ResolveExistingName(row);
  if (next == Next::kGoOn && !row.name.empty()) Define(row);
  return next;
}

host::RangePtr NameDefinitionRun::CellsOf(const std::string& name) {
  return NullWhenRefused([&] { return names_->Item(name)->RefersToRange(); });
}

NameDefinitionRun::Next NameDefinitionRun::ResolveNameInUse(Row& row) {
  while (true) {
    const host::RangePtr other = CellsOf(row.name);
    if (!other) return Next::kGoOn;
    if (other->Row() == row.number && other->Worksheet()->Name() == sheet_->Name()) {
      return Next::kGoOn;
    }
    const Next next = AskAboutNameInUse(row, other);
    if (next != Next::kSkipRow) return next;
  }
}

// kSkipRow where the row's name is another one now, which has to be looked at as well.
NameDefinitionRun::Next NameDefinitionRun::AskAboutNameInUse(Row& row,
                                                             const host::RangePtr& other) {
  if (!name_in_use_) name_in_use_.emplace();
  frmNaming01& dialog = *name_in_use_;
  const host::WorksheetPtr other_sheet = other->Worksheet();
  const int other_row = other->Row();
  const std::string line_break(kLineBreak);
  // The words "in column I" stay on a sheet with another name column too.
  dialog.SetMessageText("Sheet: " + sheet_->Name() + "    Row: " + std::to_string(row.number) +
                        line_break + "Name: " + row.name + line_break +
                        "The name you're wishing to define, in column I, is already in use "
                        "elsewhere in the model (in Sheet: " +
                        other_sheet->Name() + ", Row: " + std::to_string(other_row) +
                        ").  Choose one of the actions below, and click the GO button, or else "
                        "CANCEL.");
  dialog.SetNameText(row.name);
  dialog.SetChoice1Caption("Change the definition of " + row.name + " to refer to this row");
  dialog.SetChoice2Caption("Leave the definition of " + row.name +
                           " alone, and use the new name I'm entering below for this row");
  user_interface_.ShowModal(dialog);
  if (!dialog.Continue()) return Next::kCancel;
  if (dialog.Choice() == kTakeNameOver) {
    DeleteNameOf(other);
    // The name column is the active sheet's, whatever kind the other sheet is: the model's rule.
    Remember(other_sheet->Cells(other_row, name_column_), "", kNameInPlace);
    return Next::kGoOn;
  }
  // As it was typed: blanks make it invalid, they are not replaced here.
  row.name = dialog.TypedName();
  Remember(row.name_cell, row.name, kNameInPlace);
  return Next::kSkipRow;
}

NameDefinitionRun::Next NameDefinitionRun::ResolveExistingName(Row& row) {
  const auto name_of = [](const host::RangePtr& range) {
    return NullWhenRefused([&] { return range->Name(); });
  };
  host::RangePtr row_range = sheet_->Range(row.number, first_column_, row.number, last_column_);
  host::NamePtr name = name_of(row_range);
  if (!name) {
    row_range = sheet_->Range(row.number, model::kFirstHistoryColumn, row.number,
                              model::kLastPlanningColumn);
    name = name_of(row_range);
  }
  if (!name) return Next::kGoOn;
  const std::string found = name->OwnName();
  if (found == row.name) return Next::kGoOn;
  if (row.name.empty()) {
    DeleteNameOf(row_range);
    Remember(row.name_cell, "", kNameInPlace);
    return Next::kGoOn;
  }
  return AskAboutExistingName(row, row_range, found);
}

NameDefinitionRun::Next NameDefinitionRun::AskAboutExistingName(Row& row,
                                                                const host::RangePtr& row_range,
                                                                const std::string& found) {
  if (!row_has_name_) row_has_name_.emplace();
  frmNaming02& dialog = *row_has_name_;
  const std::string line_break(kLineBreak);
  dialog.SetMessageText("Sheet: " + sheet_->Name() + "    Row: " + std::to_string(row.number) +
                        line_break + "Existing name: " + found + line_break +
                        "Requested name: " + row.name + line_break +
                        "There is already an Excel name defined for this row. Please choose one of "
                        "the actions below, and click the GO button, or else CANCEL.");
  user_interface_.ShowModal(dialog);
  if (!dialog.Continue()) return Next::kCancel;
  if (dialog.Choice() == kReplaceRowsName) {
    DeleteNameOf(row_range);
    Remember(row.name_cell, "", kNameInPlace);
  } else if (dialog.Choice() == kKeepRowsName) {
    Remember(row.name_cell, found, kNameInPlace);
    return Next::kSkipRow;
  }
  return Next::kGoOn;
}

void NameDefinitionRun::Define(const Row& row) {
  const std::string number = std::to_string(row.number);
  // The sheet's name stands without quotes, so that no name can be created on a sheet that needs
  // them: the model's rule.
  const std::string reference = "=" + sheet_->Name() + "!R" + number + "C" +
                                std::to_string(first_column_) + ":R" + number + "C" +
                                std::to_string(last_column_);
  bool is_defined = false;
  try {
    is_defined = names_->Add(row.name, reference);
  } catch (const HostError&) {
    is_defined = false;  // whatever the reason, the user sees the name's colour
  }
  Remember(row.name_cell, row.name, is_defined ? kNameInPlace : kNameNotCreated);
  if (!is_defined) names_invalid_ = true;
}

void NameDefinitionRun::DeleteNameOf(const host::RangePtr& range) {
  Existing(range->Name())->Delete();
  names_deleted_ = true;
}

void NameDefinitionRun::Remember(host::RangePtr cell, std::string text, int color_index) {
  pending_.push_back({std::move(cell), std::move(text), color_index});
}

void NameDefinitionRun::RewriteCells() {
  for (const PendingCell& pending : pending_) {
    pending.cell->SetValue(Value(pending.text));
    const host::FontPtr font = pending.cell->Font();
    font->SetSize(kNameFontSize);
    font->SetItalic(true);
    font->SetColorIndex(pending.color_index);
  }
}

void NameDefinitionRun::Report() {
  std::string text;
  if (names_deleted_) {
    text =
        "One or more Excel names were deleted.  You should search the entire workbook for #NAME "
        "errors to make sure everything is still ok.";
  }
  if (names_invalid_) {
    if (!text.empty()) text.append(kLineBreak).append(kLineBreak);
    text +=
        "One or more of your new names was invalid in format and was not created.  Check for "
        "colored text in the name column.";
  }
  if (!text.empty()) user_interface_.MessageBox(text, kInformation, kProductName);
}

}  // namespace vantora
