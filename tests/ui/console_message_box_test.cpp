#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/console_fixture.h"

namespace vantora::ui {
namespace {

using testing::HasSubstr;

struct Case {
  std::string name;
  int style;
  std::string typed;
  MessageBoxResult result;
};

void PrintTo(const Case& value, std::ostream* out) { *out << value.name; }

class ConsoleMessageBox : public testing::TestWithParam<Case> {};

TEST_P(ConsoleMessageBox, GivesTheButtonThatWasTyped) {
  const Case& c = GetParam();
  TypedConsole console(c.typed + "\nunread");
  EXPECT_EQ(console.user_interface().MessageBox("Text", c.style, "Title"), c.result);
  EXPECT_EQ(console.unread(), "unread");
}

INSTANTIATE_TEST_SUITE_P(
    Answers, ConsoleMessageBox,
    testing::Values(
        Case{"EnterPressesTheFirst", kOkCancel, "", MessageBoxResult::kOk},
        Case{"EnterPressesTheSecondDefault", kOkCancel | kDefaultButton2, "",
             MessageBoxResult::kCancel},
        Case{"EnterPressesNoAsDefault", kYesNo | kDefaultButton2, "", MessageBoxResult::kNo},
        Case{"OneButtonHasNoSecond", kOkOnly | kDefaultButton2, "", MessageBoxResult::kOk},
        Case{"Number", kYesNo, "2", MessageBoxResult::kNo},
        Case{"Caption", kYesNo, "yes", MessageBoxResult::kYes},
        Case{"FirstLetter", kYesNo, " n ", MessageBoxResult::kNo},
        Case{"CancelByWord", kOkCancel, "CANCEL", MessageBoxResult::kCancel},
        Case{"Escape", kOkCancel, "\x1b", MessageBoxResult::kCancel},
        Case{"AskedAgain", kOkCancel, "perhaps\n3\n0\nc", MessageBoxResult::kCancel},
        Case{"ArrowKeyIsNoAnswer", kOkCancel, "\x1b[A\nok", MessageBoxResult::kOk}),
    [](const auto& info) { return info.param.name; });

TEST(ConsoleMessageBoxTexts, ShowsTitleIconTextAndButtons) {
  TypedConsole console("\n");
  console.user_interface().MessageBox("First line.\n\nSecond line.", kOkCancel | kExclamation,
                                      "Vantora");
  EXPECT_EQ(console.shown(),
            "\n[Vantora] Warning\nFirst line.\n\nSecond line.\n1 OK   2 Cancel   [Enter: OK]: ");
}

TEST(ConsoleMessageBoxTexts, HintNamesWhatWasTyped) {
  TypedConsole console("maybe\nno\n");
  console.user_interface().MessageBox("Text", kYesNo, "Title");
  EXPECT_THAT(console.shown(), HasSubstr("\"maybe\" is none of these: type a number from 1 to 2"));
}

TEST(ConsoleMessageBoxTexts, TextOfAWorkbookCannotSteerTheTerminal) {
  TypedConsole console("\n");
  console.user_interface().MessageBox("red \x1b[31m \x07 \xC2\x9B \xff", kOkOnly, "T\x1b]0;x");
  EXPECT_THAT(console.shown(), HasSubstr("red ?[31m ? ? ?"));
  EXPECT_EQ(console.shown().find('\x1b'), std::string::npos);
}

TEST(ConsoleMessageBoxTexts, EndOfInputClosesTheBoxIfItCanBeClosed) {
  TypedConsole console("");
  EXPECT_EQ(console.user_interface().MessageBox("Text", kOkCancel, "Title"),
            MessageBoxResult::kCancel);
  EXPECT_EQ(console.user_interface().MessageBox("Text", kOkOnly, "Title"), MessageBoxResult::kOk);
  EXPECT_THROW(console.user_interface().MessageBox("Text", kYesNo, "Title"), InputEnded);
}

}  // namespace
}  // namespace vantora::ui
