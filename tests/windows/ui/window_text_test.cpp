// Texts and places of a dialog, without showing one.
#include "ui/windows/window_text.h"

#include <gtest/gtest.h>

#include <string>

#include "ui/windows/display_scale.h"
#include "ui/windows/form_layout.h"

namespace vantora::ui {
namespace {

TEST(WindowText, LinesAndCharactersComeBack) {
  const struct {
    std::string text;
    std::wstring edit;
    std::string back;
  } kTexts[] = {
      {"", L"", ""},
      {"one\ntwo\n", L"one\r\ntwo\r\n", "one\ntwo\n"},
      {"one\r\n\ntwo", L"one\r\n\r\ntwo", "one\n\ntwo"},
      {"\xE2\x82\xAC \xF0\x9F\x98\x80", L"\u20AC \U0001F600", "\xE2\x82\xAC \xF0\x9F\x98\x80"},
      {"a\xFFz", L"a\uFFFDz", "a\xEF\xBF\xBDz"},
  };
  for (const auto& text : kTexts) {
    EXPECT_EQ(ToEditText(text.text), text.edit) << text.text;
    EXPECT_EQ(FromEditText(text.edit), text.back) << text.text;
  }
}

class SmallForm final : public Form {
 public:
  explicit SmallForm(std::string message)
      : Form("frmSmall", "", 144, 72),
        label(Add<Label>("lblMessage", std::move(message),
                         Bounds{.left = 9, .top = 9, .width = 126, .height = 18})),
        beside(
            Add<Label>("lblBeside", "", Bounds{.left = 137, .top = 9, .width = 5, .height = 18})),
        button(
            Add<Button>("butGO", "GO", Bounds{.left = 9, .top = 36, .width = 60, .height = 27})) {}
  Label& label;
  Label& beside;
  Button& button;
};

TEST(Layout, ScalesPointsToPixels) {
  const MessageFont font(192);
  const FormLayout layout = LayOut(SmallForm("Short"), font.handle(), 192);
  EXPECT_EQ(layout.client.cx, 384);
  EXPECT_EQ(layout.client.cy, 192);
  EXPECT_EQ(layout.controls[2].left, 24);
  EXPECT_EQ(layout.controls[2].top, 96);
  EXPECT_EQ(layout.controls[2].right, 184);
  EXPECT_EQ(layout.controls[2].bottom, 168);
}

TEST(Layout, LongTextPushesDownWhatStandsBelow) {
  std::string message;
  for (int i = 0; i < 40; ++i) message += "many words ";
  SmallForm form(message);
  const MessageFont font(96);
  const FormLayout short_layout = LayOut(SmallForm("Short"), font.handle(), 96);
  FormLayout layout = LayOut(form, font.handle(), 96);
  const int push = layout.client.cy - short_layout.client.cy;
  EXPECT_GT(push, 20);
  EXPECT_EQ(layout.controls[0].bottom, short_layout.controls[0].bottom + push);
  EXPECT_EQ(layout.controls[1].bottom, short_layout.controls[1].bottom);
  EXPECT_EQ(layout.controls[2].top, short_layout.controls[2].top + push);
  // Two long texts side by side push once, a hidden one not at all.
  form.beside.SetBounds(form.label.bounds());
  form.beside.SetCaption(message);
  EXPECT_EQ(LayOut(form, font.handle(), 96).client.cy, layout.client.cy);
  form.label.SetVisible(false);
  form.beside.SetVisible(false);
  EXPECT_EQ(LayOut(form, font.handle(), 96).client.cy, short_layout.client.cy);
}

}  // namespace
}  // namespace vantora::ui
