#include "ui/every_control_form.h"

#include <utility>

namespace vantora::ui {
namespace {

constexpr double kLeft = 12;
constexpr double kMiddle = 150;
constexpr double kColumn = 126;

Bounds At(double left, double top, double width, double height) {
  return {.left = left, .top = top, .width = width, .height = height};
}

}  // namespace

EveryControlForm::EveryControlForm()
    : Form("frmEveryControl", "Every control \xE2\x80\x93 R&D", 288, 240),
      name([this]() -> TextBox& {
        Add<Label>("lblName", "&Name of the sheet:", At(kLeft, 12, kColumn, 12));
        return Add<TextBox>("txtName", At(kMiddle, 9, kColumn, 18));
      }()),
      remarks([this]() -> TextBox& {
        Add<Label>("lblRemarks", "&Remarks:", At(kLeft, 36, kColumn, 12));
        return Add<TextBox>("txtRemarks", At(kMiddle, 33, kColumn, 39), /*multi_line=*/true);
      }()),
      book(Add<ChoiceList>(ControlKind::kComboBox, "cboBook", At(kLeft, 81, kColumn, 18))),
      sheets(Add<ChoiceList>(ControlKind::kListBox, "lstSheets", At(kMiddle, 81, kColumn, 54))),
      all(Add<OptionButton>("optAll", "&All columns", "columns", At(kLeft, 108, kColumn, 15))),
      selected(Add<OptionButton>("optSelected", "&Selected columns", "columns",
                                 At(kLeft, 123, kColumn, 15))),
      above(Add<OptionButton>("optAbove", "A&bove", "place", At(kLeft, 147, 60, 15))),
      below(Add<OptionButton>("optBelow", "Be&low", "place", At(78, 147, 60, 15))),
      formats(Add<CheckBox>("chkFormats", "Take the &formats over as well as the validation rules",
                            At(kMiddle, 144, kColumn, 15))),
      more(Add<Button>("butMore", "&More", At(kLeft, 210, 60, 21))),
      copy(Add<Button>("butCopy", "Copy", At(144, 210, 60, 21))),
      cancel(Add<Button>("butCancel", "Cancel", At(216, 210, 60, 21))) {
  Add<Label>("lblLiteral", "Research & development: R&D", At(kLeft, 180, 264, 12));
  book.SetInitialText("Choose a workbook");
  for (const char* item : {"Plan.xlsm", "R&D.xlsm",
                           "\xC3\x9C"
                           "bersicht.xlsm"}) {
    book.AddItem(item);
  }
  for (const char* item : {"Input", "Output", "Reference"}) sheets.AddItem(item);
  PressOption(all);
  PressOption(above);
  name.on_change = [this] { log.push_back("name " + name.text()); };
  remarks.on_change = [this] { log.push_back("remarks " + remarks.text()); };
  book.on_change = [this] { log.push_back("book " + std::to_string(book.list_index())); };
  sheets.on_change = [this] { log.push_back("sheets " + std::to_string(sheets.list_index())); };
  for (auto* option : {&all, &selected, &above, &below}) {
    option->on_click = [this, option] { log.push_back(option->name()); };
  }
  formats.on_click = [this] { log.push_back(formats.checked() ? "formats" : "no formats"); };
  more.on_click = [this] { log.push_back("more"); };
  copy.SetDefault();
  copy.on_click = [this] {
    log.push_back("copy");
    Hide();
  };
  cancel.SetCancel();
  cancel.on_click = [this] {
    log.push_back("cancel");
    Hide();
  };
}

void EveryControlForm::AddNote(const std::string& text) {
  const double top = 195 + 12 * static_cast<double>(notes_++);
  Add<CheckBox>("chkNote" + std::to_string(notes_), text, At(kLeft, top, kColumn, 12));
}

}  // namespace vantora::ui
