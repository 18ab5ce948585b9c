#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialogs/frm_copy_worksheet.h"
#include "dialogs/frm_save_comments.h"
#include "dialogs/frm_save_history_prompt.h"
#include "ui/console_fixture.h"

namespace vantora::ui {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr char kPrefilled[] = " -- 11/21/2026 2:31:05 PM";

struct CommentCase {
  std::string name;
  std::string typed;
  bool goes_on;
  std::string comment;
};

void PrintTo(const CommentCase& value, std::ostream* out) { *out << value.name; }

class ConsoleSaveComments : public testing::TestWithParam<CommentCase> {};

TEST_P(ConsoleSaveComments, GivesTheAnswer) {
  const CommentCase& c = GetParam();
  StoppedClock clock;
  TypedConsole console(c.typed);
  frmSaveComments dialog(clock);
  console.user_interface().ShowModal(dialog);
  EXPECT_FALSE(dialog.visible());
  EXPECT_EQ(dialog.Continue(), c.goes_on);
  if (c.goes_on) {
    EXPECT_EQ(dialog.CommentText(), c.comment);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Answers, ConsoleSaveComments,
    testing::Values(CommentCase{"EnterKeepsTheTextAndPressesTheDefault", "\n\n", true, kPrefilled},
                    CommentCase{"TypedTextReplaces", "budget  \n\n1\n", true, "budget  "},
                    CommentCase{"TwoLines", "one\ntwo\n\n\n", true, "one\ntwo"},
                    CommentCase{"TwoQuotesEmptyIt", "\"\"\n\n", true, ""},
                    CommentCase{"ButtonByNumber", "text\n\n2\n", true, ""},
                    CommentCase{"ButtonByStartOfItsCaption", "\ncontinue with no\n", true, ""},
                    CommentCase{"AmbiguousStartIsAskedAgain", "\ncontinue\n1\n", true, kPrefilled},
                    CommentCase{"CancelButton", "\n3\n", false, ""},
                    CommentCase{"CancelAsATextIsAText", "cancel\n\n1\n", true, "cancel"},
                    CommentCase{"EndOfInputAtTheText", "", false, ""},
                    CommentCase{"EndOfInputAtTheButtons", "text\n\n", false, ""},
                    CommentCase{"EscapeAtTheText", "\x1b\n", false, ""}),
    [](const auto& info) { return info.param.name; });

TEST(ConsoleDialog, ShowsCaptionTextsAndButtons) {
  StoppedClock clock;
  TypedConsole console("\n\n", 60);
  frmSaveComments dialog(clock);
  console.user_interface().ShowModal(dialog);
  EXPECT_THAT(console.shown(), HasSubstr("\nVantora Save-a-Year Comment Text\n-----"));
  EXPECT_THAT(console.shown(), HasSubstr("to remind you of the meaning\nof this"));
  EXPECT_THAT(console.shown(), HasSubstr(kPrefilled));
  EXPECT_THAT(console.shown(), EndsWith("  1  Continue with text I've entered\n"
                                        "  2  Continue with no coment\n"
                                        "  3  Cancel\n"
                                        "Button [Continue with text I've entered]: "));
}

struct YearCase {
  std::string name;
  std::string typed;
  bool goes_on;
  int choice;
};

void PrintTo(const YearCase& value, std::ostream* out) { *out << value.name; }

class ConsoleHistoryPrompt : public testing::TestWithParam<YearCase> {};

TEST_P(ConsoleHistoryPrompt, GivesTheChoice) {
  const YearCase& c = GetParam();
  TypedConsole console(c.typed);
  frmSaveHistoryPrompt dialog;
  for (const char* year : {"2021 (column J)", "2022 (column K)", "2023 (column L)"}) {
    dialog.YearCaptionAdd(year);
  }
  console.user_interface().ShowModal(dialog);
  EXPECT_EQ(dialog.Continue(), c.goes_on);
  if (c.goes_on) {
    EXPECT_EQ(dialog.Choice(), c.choice);
  }
  EXPECT_THAT(console.shown(), HasSubstr("  2  2022 (column K)\n"));
  EXPECT_THAT(console.shown(), HasSubstr("Choice [1 2021 (column J)]: "));
}

INSTANTIATE_TEST_SUITE_P(Answers, ConsoleHistoryPrompt,
                         testing::Values(YearCase{"EnterKeepsTheFirst", "\n\n", true, 1},
                                         YearCase{"Number", "3\ngo\n", true, 3},
                                         YearCase{"Text", "2022 (COLUMN K)\n\n", true, 2},
                                         YearCase{"StartOfAText", "2023\n\n", true, 3},
                                         YearCase{"OutOfTheListIsAskedAgain", "4\n2\n\n", true, 2},
                                         YearCase{"CancelInsteadOfAChoice", "cancel\n", false, 0},
                                         YearCase{"CancelButton", "2\ncancel\n", false, 0}),
                         [](const auto& info) { return info.param.name; });

TEST(ConsoleDialog, ShowsATextForReadingAndAsksNothingForIt) {
  TypedConsole console("2\n\n2\ny\ncopy\n");
  frmCopyWorksheet dialog;
  dialog.SetSourceNames({"Plan", "Budget"});
  dialog.SetTargetNames({"Model.xlsm"});
  dialog.SetTargetWorkbookName("Model.xlsm");
  dialog.SetMessage("Read this.\n\n");
  console.user_interface().ShowModal(dialog);
  EXPECT_EQ(console.unread(), "");
  EXPECT_FALSE(dialog.IsCancelled());
  EXPECT_EQ(dialog.SourceRangeName(), "Budget selected area");
  EXPECT_TRUE(dialog.CopyColors());
  EXPECT_THAT(console.shown(), HasSubstr("\nRead this.\n"));
  EXPECT_THAT(console.shown(), Not(HasSubstr("Type the text")));
}

// One control of each of the other kinds; the check box enables the text box behind it.
class EveryControl : public Form {
 public:
  EveryControl() : Form("frmEvery", "Every control", 100, 100) {
    Add<OptionButton>("optOne", "&One", "group", Bounds{});
    Add<OptionButton>("optTwo", "&Two", "group", Bounds{});
    auto& check = Add<CheckBox>("chkMore", "&More && more", Bounds{});
    auto& text = Add<TextBox>("txtMore", Bounds{});
    text.SetEnabled(false);
    check.on_click = [&] { text.SetEnabled(check.checked()); };
    Add<ChoiceList>(ControlKind::kListBox, "lstEmpty", Bounds{});
    Add<TextBox>("txtHidden", Bounds{}).SetVisible(false);
    Add<Button>("butTry", "&Try", Bounds{});
    Add<Button>("butDone", "&Done", Bounds{}).on_click = [this] { Hide(); };
  }
  const OptionButton& two() const { return static_cast<OptionButton&>(*Find("optTwo")); }
  const CheckBox& more() const { return static_cast<CheckBox&>(*Find("chkMore")); }
  const TextBox& text() const { return static_cast<TextBox&>(*Find("txtMore")); }
  bool refuses_close = false;

 private:
  bool AllowsCloseByUser() const override { return !refuses_close; }
};

TEST(ConsoleDialog, AsksForEachControlThatCanBeUsed) {
  TypedConsole console("two\nperhaps\ny\nsome text\n\ndone\n");
  EveryControl form;
  console.user_interface().ShowModal(form);
  EXPECT_TRUE(form.two().pressed());
  EXPECT_TRUE(form.more().checked());
  EXPECT_EQ(form.text().text(), "some text");
  EXPECT_EQ(console.unread(), "");
  EXPECT_THAT(console.shown(), HasSubstr("More & more (y/n) [n]: "));
  EXPECT_THAT(console.shown(), HasSubstr("Type y for yes or n for no."));
  EXPECT_THAT(console.shown(), HasSubstr("Enter presses none of the buttons"));
  EXPECT_THAT(console.shown(), HasSubstr("  1  Try\n  2  Done\nButton: "));
}

TEST(ConsoleDialog, DisabledControlsAreNotAskedFor) {
  TypedConsole console("\n\ndone\n");
  EveryControl form;
  console.user_interface().ShowModal(form);
  EXPECT_FALSE(form.more().checked());
  EXPECT_THAT(console.shown(), Not(HasSubstr("Text")));
}

TEST(ConsoleDialog, StaysUntilAButtonEndsIt) {
  TypedConsole console("1\nn\ntry\n2\nn\ndone\n");
  EveryControl form;
  console.user_interface().ShowModal(form);
  EXPECT_FALSE(form.visible());
  EXPECT_TRUE(form.two().pressed());
}

TEST(ConsoleDialog, WithoutACancelButtonTheCloseBoxIsPressed) {
  TypedConsole console("");
  EveryControl form;
  console.user_interface().ShowModal(form);
  EXPECT_TRUE(form.unloaded());
}

TEST(ConsoleDialog, EndOfInputIsReportedWhenTheDialogCannotBeLeft) {
  TypedConsole console("");
  EveryControl form;
  form.refuses_close = true;
  EXPECT_THROW(console.user_interface().ShowModal(form), InputEnded);
}

}  // namespace
}  // namespace vantora::ui
