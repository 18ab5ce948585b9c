// The windows of each kind of control.
#include <algorithm>
#include <string>
#include <vector>

#include "ui/windows/control_window.h"
#include "ui/windows/meter_window.h"
#include "ui/windows/window_text.h"

namespace vantora::ui {
namespace {

class LabelWindow final : public ControlWindow {
 public:
  explicit LabelWindow(const ControlPlace& place)
      : ControlWindow(place, L"STATIC",
                      SS_LEFT | (MarksAccelerator(place.form, place.position) ? 0 : SS_NOPREFIX)) {}
};

class TextBoxWindow final : public ControlWindow {
 public:
  TextBoxWindow(const ControlPlace& place, TextBox& box)
      : ControlWindow(place, L"EDIT", StyleOf(place.form, box), WS_EX_CLIENTEDGE), box_(box) {
    SendMessageW(handle(), EM_LIMITTEXT, 0, 0);
    if (!box.multi_line()) return;
    const LONG_PTR own =
        SetWindowLongPtrW(handle(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MultiLineProcedure));
    SetWindowLongPtrW(handle(), GWLP_USERDATA, own);
  }

  bool OnNotification(int code) override {
    if (code != EN_CHANGE) return false;
    box_.SetText(FromEditText(TextOf(handle())));
    return true;
  }

  bool IsBold() const override { return box_.bold(); }
  std::optional<COLORREF> LetterColor() const override {
    if (box_.fore_color() == 0) return std::nullopt;
    return static_cast<COLORREF>(box_.fore_color());
  }

 private:
  // Enter makes a new line only where it does not press a button.
  static DWORD StyleOf(const Form& form, const TextBox& box) {
    const DWORD read_only = box.read_only() ? ES_READONLY : 0;
    if (!box.multi_line()) return WS_TABSTOP | ES_AUTOHSCROLL | read_only;
    const bool has_default =
        std::any_of(form.controls().begin(), form.controls().end(), [](const auto& control) {
          const auto* button = dynamic_cast<const Button*>(control.get());
          return button && button->is_default();
        });
    return WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | read_only |
           (has_default ? 0 : ES_WANTRETURN);
  }

  // Several lines of text take Escape for themselves and close the dialog; it belongs to the cancel
  // button.
  static LRESULT CALLBACK MultiLineProcedure(HWND window, UINT message, WPARAM wparam,
                                             LPARAM lparam) {
    if (message == WM_KEYDOWN && wparam == VK_ESCAPE) {
      return SendMessageW(GetParent(window), WM_COMMAND, IDCANCEL, 0);
    }
    const auto own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return CallWindowProcW(own, window, message, wparam, lparam);
  }

  void UpdateContent() override {
    const std::wstring text = ToEditText(box_.text());
    if (text != TextOf(handle())) SetWindowTextW(handle(), text.c_str());
  }

  TextBox& box_;
};

// A combo box or a list box: the same messages under other numbers.
class ChoiceWindow : public ControlWindow {
 protected:
  struct Messages {
    UINT add;
    UINT reset;
    UINT get_choice;
    UINT set_choice;
    int changed;
  };

  ChoiceWindow(const ControlPlace& place, ChoiceList& list, const Messages& messages,
               const wchar_t* window_class, DWORD style, DWORD extended_style)
      : ControlWindow(place, window_class, style | WS_TABSTOP | WS_VSCROLL, extended_style),
        list_(list),
        messages_(messages) {}

  const ChoiceList& list() const { return list_; }

 private:
  bool OnNotification(int code) override {
    const int chosen = Chosen();
    if (code != messages_.changed || chosen < 0) return false;
    list_.Choose(chosen);
    return true;
  }

  void UpdateContent() override {
    if (shown_items_ != list_.items()) ShowItems();
    if (Chosen() == list_.list_index()) return;
    SendMessageW(handle(), messages_.set_choice, static_cast<WPARAM>(list_.list_index()), 0);
  }

  int Chosen() const {
    return static_cast<int>(SendMessageW(handle(), messages_.get_choice, 0, 0));
  }

  void ShowItems() {
    shown_items_ = list_.items();
    SendMessageW(handle(), WM_SETREDRAW, FALSE, 0);
    SendMessageW(handle(), messages_.reset, 0, 0);
    for (const std::string& item : shown_items_) {
      const std::wstring text = ToUtf16(item);
      SendMessageW(handle(), messages_.add, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    SendMessageW(handle(), WM_SETREDRAW, TRUE, 0);
    InvalidateRect(handle(), nullptr, TRUE);
  }

  ChoiceList& list_;
  Messages messages_;
  std::vector<std::string> shown_items_;
};

class ListBoxWindow final : public ChoiceWindow {
 public:
  ListBoxWindow(const ControlPlace& place, ChoiceList& list)
      : ChoiceWindow(place, list,
                     {LB_ADDSTRING, LB_RESETCONTENT, LB_GETCURSEL, LB_SETCURSEL, LBN_SELCHANGE},
                     L"LISTBOX", LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, WS_EX_CLIENTEDGE) {}
};

// A drop-down list, drawn here for the sake of the text that it shows while nothing is chosen.
class ComboBoxWindow final : public ChoiceWindow {
 public:
  ComboBoxWindow(const ControlPlace& place, ChoiceList& list)
      : ChoiceWindow(place, list,
                     {CB_ADDSTRING, CB_RESETCONTENT, CB_GETCURSEL, CB_SETCURSEL, CBN_SELCHANGE},
                     L"COMBOBOX", CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS, 0) {}

  void Draw(const DRAWITEMSTRUCT& item) override {
    const bool chosen = item.itemID < list().items().size();
    const bool in_field = (item.itemState & ODS_COMBOBOXEDIT) != 0;
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    const bool grey = (item.itemState & ODS_DISABLED) != 0 || !chosen;
    const int background = selected ? COLOR_HIGHLIGHT : COLOR_WINDOW;
    const int letters = selected ? COLOR_HIGHLIGHTTEXT : grey ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT;
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(background));
    std::wstring text;
    if (chosen) {
      text = ToUtf16(list().items()[item.itemID]);
    } else if (in_field) {
      text = ToUtf16(list().initial_text());
    }
    RECT area = item.rcItem;
    InflateRect(&area, -2, 0);
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, GetSysColor(letters));
    DrawTextW(item.hDC, text.c_str(), -1, &area,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    const bool focus = (item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT);
    if (focus) DrawFocusRect(item.hDC, &item.rcItem);
  }

 private:
  static constexpr int kMostEntriesInView = 12;
  // What the frame adds to the field's height, in pixels whatever the resolution.
  static constexpr int kFrame = 6;

  int FitTo(int height) override {
    const int entry = height - kFrame;
    for (const int part : {-1, 0}) {  // the field, the entries of the list
      SendMessageW(handle(), CB_SETITEMHEIGHT, static_cast<WPARAM>(part), entry);
    }
    return entry * kMostEntriesInView + kFrame;
  }
};

class OptionButtonWindow final : public ControlWindow {
 public:
  OptionButtonWindow(const ControlPlace& place, OptionButton& option)
      : ControlWindow(place, L"BUTTON", BS_RADIOBUTTON | BS_MULTILINE),
        form_(place.form),
        option_(option) {}

  // The window reports a click also when it merely receives the focus.
  bool OnNotification(int code) override {
    if (code != BN_CLICKED || option_.pressed()) return false;
    form_.PressOption(option_);
    return true;
  }

 private:
  void UpdateContent() override {
    const WPARAM state = option_.pressed() ? BST_CHECKED : BST_UNCHECKED;
    if (static_cast<WPARAM>(SendMessageW(handle(), BM_GETCHECK, 0, 0)) != state) {
      SendMessageW(handle(), BM_SETCHECK, state, 0);
    }
    const LONG style = GetWindowLongW(handle(), GWL_STYLE);
    const LONG wanted = IsTabStop(form_, option_) ? style | WS_TABSTOP : style & ~WS_TABSTOP;
    if (wanted != style) SetWindowLongW(handle(), GWL_STYLE, wanted);
  }

  Form& form_;
  OptionButton& option_;
};

class CheckBoxWindow final : public ControlWindow {
 public:
  CheckBoxWindow(const ControlPlace& place, CheckBox& box)
      : ControlWindow(place, L"BUTTON", WS_TABSTOP | BS_CHECKBOX | BS_MULTILINE), box_(box) {}

  bool OnNotification(int code) override {
    if (code != BN_CLICKED) return false;
    box_.SetChecked(!box_.checked());
    return true;
  }

 private:
  void UpdateContent() override {
    const WPARAM state = box_.checked() ? BST_CHECKED : BST_UNCHECKED;
    if (static_cast<WPARAM>(SendMessageW(handle(), BM_GETCHECK, 0, 0)) != state) {
      SendMessageW(handle(), BM_SETCHECK, state, 0);
    }
  }

  CheckBox& box_;
};

class ButtonWindow final : public ControlWindow {
 public:
  ButtonWindow(const ControlPlace& place, Button& button)
      : ControlWindow(
            place, L"BUTTON",
            WS_TABSTOP | BS_MULTILINE | (button.is_default() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON)),
        button_(button) {}

  bool OnNotification(int code) override {
    if (code != BN_CLICKED) return false;
    button_.Press();
    return true;
  }

 private:
  Button& button_;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeControlWindow(const ControlPlace& place,
                                                 const std::optional<Meter>& meter) {
  Control& control = *place.form.controls()[place.position];
  switch (control.kind()) {
    case ControlKind::kLabel:
      if (meter && meter->Covers(control)) return nullptr;
      if (meter && &control == meter->back) return std::make_unique<MeterWindow>(place, *meter);
      return std::make_unique<LabelWindow>(place);
    case ControlKind::kTextBox:
      return std::make_unique<TextBoxWindow>(place, static_cast<TextBox&>(control));
    case ControlKind::kComboBox:
      return std::make_unique<ComboBoxWindow>(place, static_cast<ChoiceList&>(control));
    case ControlKind::kListBox:
      return std::make_unique<ListBoxWindow>(place, static_cast<ChoiceList&>(control));
    case ControlKind::kOptionButton:
      return std::make_unique<OptionButtonWindow>(place, static_cast<OptionButton&>(control));
    case ControlKind::kCheckBox:
      return std::make_unique<CheckBoxWindow>(place, static_cast<CheckBox&>(control));
    case ControlKind::kButton:
      break;
  }
  return std::make_unique<ButtonWindow>(place, static_cast<Button&>(control));
}

}  // namespace vantora::ui
