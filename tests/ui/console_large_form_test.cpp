// A dialog with more controls than anybody wants to be asked for one after the other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/console_fixture.h"

namespace vantora::ui {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kRows = 8;
constexpr int kBoxes = 3;

// A name, and rows of check boxes of which the last can be hidden by a button.
class GridForm : public Form {
 public:
  GridForm() : Form("frmGrid", "Grid", 100, 100) {
    Add<Label>("lblMessage", "Check what is shown.", Bounds{});
    Add<Label>("lblName", "Name", Bounds{});
    Add<TextBox>("txtName", Bounds{}).SetText("Cash");
    for (int row = 1; row <= kRows; ++row) {
      Add<Label>("lblRow" + std::to_string(row), "Row " + std::to_string(row), Bounds{});
      for (int box = 1; box <= kBoxes; ++box) {
        Add<CheckBox>("chk" + std::to_string(row) + "_" + std::to_string(box), std::to_string(box),
                      Bounds{});
      }
    }
    Button& shrink = Add<Button>("butShrink", "Shrink", Bounds{});
    shrink.on_click = [this] {
      for (int row = kRows - 1; row <= kRows; ++row) {
        for (int box = 1; box <= kBoxes; ++box) Box(row, box).SetVisible(false);
        Find("lblRow" + std::to_string(row))->SetVisible(false);
      }
    };
    Button& ok = Add<Button>("butOK", "OK", Bounds{});
    ok.SetDefault();
    ok.on_click = [this] { accepted = true, Hide(); };
    Button& cancel = Add<Button>("butCancel", "Cancel", Bounds{});
    cancel.SetCancel();
    cancel.on_click = [this] { Hide(); };
  }

  CheckBox& Box(int row, int box) {
    return *static_cast<CheckBox*>(Find("chk" + std::to_string(row) + "_" + std::to_string(box)));
  }
  // The checked boxes of a row.
  std::string Checked(int row) {
    std::string text;
    for (int box = 1; box <= kBoxes; ++box) text += Box(row, box).checked() ? '0' + box : '-';
    return text;
  }
  const std::string& Name() { return static_cast<TextBox*>(Find("txtName"))->text(); }

  bool accepted = false;
};

TEST(ConsoleLargeForm, IsAListFromWhichTheUserPicks) {
  TypedConsole console("row 3\n1, 3\n3\nnone\nname\nNet cash\n2\nall\n\n");
  GridForm form;
  form.Box(2, 1).SetChecked(true);
  console.user_interface().ShowModal(form);
  EXPECT_EQ(console.unread(), "");
  EXPECT_TRUE(form.accepted);
  EXPECT_EQ(form.Name(), "Net cash");
  EXPECT_EQ(form.Checked(1), "123");
  EXPECT_EQ(form.Checked(2), "---");
  EXPECT_EQ(form.Checked(3), "1-3");
  EXPECT_THAT(console.shown(),
              AllOf(HasSubstr("Check what is shown.\n  1  Name [Cash]\n  2  Row 1 [none]\n"
                              "  3  Row 2 [1]\n"),
                    HasSubstr("Row 3 [1, 3]\n"), HasSubstr(" 10  Shrink\n"),
                    HasSubstr("What to change, or button [OK]: ")));
}

TEST(ConsoleLargeForm, AsksAgainForWhatIsNoBoxOfTheRow) {
  TypedConsole console("row 3\n2 4\n2\nok\n");
  GridForm form;
  console.user_interface().ShowModal(form);
  EXPECT_EQ(form.Checked(3), "-2-");
  EXPECT_TRUE(form.accepted);
  EXPECT_EQ(console.unread(), "");
}

TEST(ConsoleLargeForm, CancelAndTheEndOfInputLeaveIt) {
  for (const char* typed : {"row 1\nall\ncancel\n", "row 1\nall\n", "row 1\ncancel\n", ""}) {
    TypedConsole console(typed);
    GridForm form;
    console.user_interface().ShowModal(form);
    EXPECT_FALSE(form.visible()) << typed;
    EXPECT_FALSE(form.accepted) << typed;
  }
}

TEST(ConsoleLargeForm, AsksOneAfterTheOtherWhenThereIsLittle) {
  std::string typed = "y\n";
  for (int i = 1; i < 7 * kBoxes; ++i) typed += '\n';
  TypedConsole console(typed + "ok\n");
  GridForm form;
  for (const auto& control : form.controls()) {
    const std::string& name = control->name();
    if (name.ends_with("Name") || name.starts_with("chk8") || name == "lblRow8") {
      control->SetVisible(false);
    }
  }
  console.user_interface().ShowModal(form);
  EXPECT_EQ(form.Checked(1), "1--");
  EXPECT_TRUE(form.accepted);
  EXPECT_EQ(console.unread(), "");
}

TEST(ConsoleLargeForm, ShowsWhatAButtonChanged) {
  TypedConsole console("shrink\n");
  GridForm form;
  console.user_interface().ShowModal(form);
  EXPECT_THAT(console.shown(), HasSubstr("Row 8 [none]"));
  const std::string after = console.shown().substr(console.shown().find("button [OK]"));
  EXPECT_THAT(after, AllOf(HasSubstr("Row 6"), Not(HasSubstr("Row 7"))));
}

}  // namespace
}  // namespace vantora::ui
