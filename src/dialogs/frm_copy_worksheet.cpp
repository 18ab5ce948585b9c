#include "dialogs/frm_copy_worksheet.h"

#include <algorithm>

namespace vantora {
namespace {

constexpr unsigned kMessageColor = 0xFF0000;  // blue
constexpr double kLeft = 12;
constexpr double kFieldLeft = 108;
constexpr double kFieldWidth = 240;
constexpr double kWidth = 360;

Bounds LabelAt(double top) {
  return {.left = kLeft, .top = top + 3, .width = kFieldLeft - kLeft - 6, .height = 12};
}

Bounds FieldAt(double top) {
  return {.left = kFieldLeft, .top = top, .width = kFieldWidth, .height = 18};
}

// Shows `name` in the list: its entry, or as a text that is no entry.
void Show(ChoiceList& list, std::string_view name) {
  auto found = std::find(list.items().begin(), list.items().end(), name);
  if (found == list.items().end()) {
    list.SetInitialText(name);
  } else {
    list.Choose(static_cast<int>(found - list.items().begin()));
  }
}

void Fill(ChoiceList& list, const std::vector<std::string>& names, std::string_view chosen) {
  list.ClearItems();
  for (const std::string& name : names) list.AddItem(name);
  Show(list, chosen);
}

const std::string& TextOf(const ChoiceList& list) {
  return list.list_index() >= 0 ? list.items()[list.list_index()] : list.initial_text();
}

}  // namespace

frmCopyWorksheet::frmCopyWorksheet()
    : Form("frmCopyWorksheet", "Vantora Copy Worksheet", kWidth, 252),
      source_([this]() -> ChoiceList& {
        Add<Label>("lblSource", "Source worksheet:", LabelAt(9));
        return Add<ChoiceList>(ControlKind::kComboBox, "cboSourceWorksheet", FieldAt(9));
      }()),
      target_([this]() -> ChoiceList& {
        Add<Label>("lblTarget", "Target workbook:", LabelAt(33));
        return Add<ChoiceList>(ControlKind::kComboBox, "cboTargetWorkbook", FieldAt(33));
      }()),
      entire_sheet_(
          Add<OptionButton>("butSource0", "Copy the &entire sheet", "butSource",
                            Bounds{.left = kFieldLeft, .top = 57, .width = 120, .height = 15})),
      selected_area_(Add<OptionButton>("butSource1", "Copy the &selected area", "butSource",
                                       Bounds{.left = 228, .top = 57, .width = 120, .height = 15})),
      copy_colors_(
          Add<CheckBox>("chkCopyColors", "Copy the colour &palette as well",
                        Bounds{.left = kFieldLeft, .top = 75, .width = kFieldWidth, .height = 15})),
      result_(Add<TextBox>(
          "txtResult", Bounds{.left = kLeft, .top = 99, .width = kWidth - 2 * kLeft, .height = 111},
          /*multi_line=*/true)),
      copy_(Add<Button>("butCopy", "&Copy",
                        Bounds{.left = 180, .top = 219, .width = 78, .height = 24})),
      cancel_(Add<Button>("butCancel", "Cancel/Done",
                          Bounds{.left = 270, .top = 219, .width = 78, .height = 24})) {
  PressOption(entire_sheet_);
  result_.SetReadOnly();
  copy_.SetDefault();
  copy_.on_click = [this] { Copy(); };
  cancel_.SetCancel();
  cancel_.on_click = [this] { Cancel(); };
}

void frmCopyWorksheet::SetSourceNames(const std::vector<std::string>& names) {
  Fill(source_, names, source_name_);
}

void frmCopyWorksheet::SetTargetNames(const std::vector<std::string>& names) {
  Fill(target_, names, target_name_);
}

void frmCopyWorksheet::SetIsSourceSelectionARange(bool is_a_range) {
  PressOption(is_a_range ? selected_area_ : entire_sheet_);
}

void frmCopyWorksheet::SetSourceWorksheetName(std::string_view name) {
  source_name_ = name;
  Show(source_, name);
}

void frmCopyWorksheet::SetTargetWorkbookName(std::string_view name) {
  target_name_ = name;
  Show(target_, name);
}

std::string frmCopyWorksheet::SourceRangeName() const {
  return source_name_ + (IsSourceSelectionARange() ? " selected area" : " entire sheet");
}

void frmCopyWorksheet::SetMessage(std::string_view text) {
  result_.SetText(text);
  result_.SetBold(true);
  result_.SetForeColor(kMessageColor);
}

void frmCopyWorksheet::EnableCopy(bool enable) {
  copy_.SetEnabled(enable);
  // Enter presses what there is left to press.
  copy_.SetDefault(enable);
  cancel_.SetDefault(!enable);
}

void frmCopyWorksheet::Copy() {
  is_cancelled_ = false;
  target_name_ = TextOf(target_);
  source_name_ = TextOf(source_);
  Hide();
}

void frmCopyWorksheet::Cancel() {
  is_cancelled_ = true;
  Hide();
}

}  // namespace vantora
