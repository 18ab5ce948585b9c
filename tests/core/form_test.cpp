#include "core/form.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ui/scripted/scripted_user_interface.h"

namespace vantora {
namespace {

class Sample : public Form {
 public:
  Sample() : Form("frmSample", "Sample", 100, 50) {
    first.on_click = [this] { log += "first "; };
    list.on_change = [this] { log += "list "; };
    text.on_change = [this] { log += "text "; };
    check.on_click = [this] { log += "check "; };
    ok.on_click = [this] { Hide(); };
  }

  OptionButton& first = Add<OptionButton>("optFirst", "First", "years", Bounds{});
  OptionButton& second = Add<OptionButton>("optSecond", "Second", "years", Bounds{});
  OptionButton& other = Add<OptionButton>("optOther", "Other", "others", Bounds{});
  ChoiceList& list = Add<ChoiceList>(ControlKind::kListBox, "lstYears", Bounds{});
  TextBox& text = Add<TextBox>("txtName", Bounds{});
  CheckBox& check = Add<CheckBox>("chkAll", "All", Bounds{});
  Button& ok = Add<Button>("butOK", "OK", Bounds{});
  bool refuses_close = false;
  std::string log;

 private:
  void OnActivate() override { log += "activate "; }
  void OnUnload() override { log += "unload "; }
  bool AllowsCloseByUser() const override { return !refuses_close; }
};

TEST(Form, OptionButtonsReleaseTheOthersOfTheirGroup) {
  Sample form;
  form.PressOption(form.other);
  form.PressOption(form.first);
  form.PressOption(form.second);
  EXPECT_FALSE(form.first.pressed());
  EXPECT_TRUE(form.second.pressed());
  EXPECT_TRUE(form.other.pressed());
  EXPECT_EQ(form.log, "first ");
}

TEST(Form, ControlsTellOfChangesOnly) {
  Sample form;
  form.text.SetText("a");
  form.text.SetText("a");
  form.check.SetChecked(false);
  form.check.SetChecked(true);
  form.list.AddItem("2026");
  form.list.Choose(0);
  form.list.Choose(0);  // picked again
  EXPECT_EQ(form.log, "text check list list ");
  EXPECT_THROW(form.list.Choose(1), std::out_of_range);
  EXPECT_THROW(form.list.Choose(-1), std::out_of_range);
  form.list.ClearItems();
  EXPECT_EQ(form.list.list_index(), -1);
}

TEST(Form, DisabledAndHiddenButtonsCannotBePressed) {
  Sample form;
  form.Activate();
  form.ok.SetEnabled(false);
  form.ok.Press();
  form.ok.SetEnabled(true);
  form.ok.SetVisible(false);
  form.ok.Press();
  EXPECT_TRUE(form.visible());
  form.ok.SetVisible(true);
  form.ok.Press();
  EXPECT_FALSE(form.visible());
  EXPECT_FALSE(form.unloaded());
}

TEST(Form, UnloadsOnceAndStartsOverWhenShownAgain) {
  Sample form;
  form.Activate();
  EXPECT_TRUE(form.CloseByUser());
  form.Unload();
  EXPECT_FALSE(form.visible());
  EXPECT_TRUE(form.unloaded());
  form.Activate();
  form.Unload();
  EXPECT_EQ(form.log, "activate unload activate unload ");
}

TEST(Form, MayRefuseItsCloseBox) {
  Sample form;
  form.refuses_close = true;
  form.Activate();
  EXPECT_FALSE(form.CloseByUser());
  EXPECT_TRUE(form.visible());
  form.Unload();
  EXPECT_TRUE(form.unloaded());
}

TEST(Form, FindsControlsWhateverTheCase) {
  Sample form;
  EXPECT_EQ(form.Find("BUTok"), &form.ok);
  EXPECT_EQ(form.Find("butNone"), nullptr);
}

}  // namespace
}  // namespace vantora
