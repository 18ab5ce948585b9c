#include "ui/scripted/scripted_user_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_services.h"

namespace vantora::ui {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using vantora::testing::Answers;

// A dialog with one control of each kind. Its button More leaves it visible.
class frmSample : public Form {
 public:
  frmSample() : Form("frmSample", "Sample Dialog", 100, 50) {
    list.AddItem("2025");
    list.AddItem("2026 (column K)");
    list.AddItem("2");
    more.on_click = [this] { pressed += "more "; };
    ok.SetDefault();
    ok.on_click = [this] { PressAndHide("ok "); };
    cancel.SetCancel();
    cancel.on_click = [this] { PressAndHide("cancel "); };
    disabled.SetEnabled(false);
    hidden.SetVisible(false);
  }

  Label& label = Add<Label>("lblPrompt", "Choose", Bounds{});
  TextBox& text = Add<TextBox>("txtName", Bounds{});
  ChoiceList& list = Add<ChoiceList>(ControlKind::kComboBox, "cboYear", Bounds{});
  CheckBox& check = Add<CheckBox>("chkAll", "All", Bounds{});
  OptionButton& first = Add<OptionButton>("optFirst", "First", "g", Bounds{});
  OptionButton& second = Add<OptionButton>("optSecond", "Second", "g", Bounds{});
  Button& more = Add<Button>("butMore", "More", Bounds{});
  Button& ok = Add<Button>("butOK", "OK", Bounds{});
  Button& cancel = Add<Button>("butCancel", "Cancel", Bounds{});
  Button& disabled = Add<Button>("butDisabled", "Disabled", Bounds{});
  TextBox& hidden = Add<TextBox>("txtHidden", Bounds{});
  bool refuses_close = false;
  std::string pressed;

 private:
  void PressAndHide(const char* name) {
    pressed += name;
    Hide();
  }
  bool AllowsCloseByUser() const override { return !refuses_close; }
};

// What an error tells when the dialog is shown with these answers; "" without one.
std::string ErrorOf(const std::vector<std::string>& answers) {
  ScriptedUserInterface scripted(Answers(answers));
  frmSample form;
  try {
    scripted.ShowModal(form);
  } catch (const AnswerError& error) {
    return error.what();
  }
  return "";
}

TEST(ParseAnswer, RefusesMalformedTexts) {
  for (const char* text : {"", "Maybe", "frmSample", ":butOK", "frmSample:", "frmSample:a=1",
                           "frmSample:a=1;", "frmSample:;butOK", "frmSample:=1;butOK"}) {
    EXPECT_THROW(ParseAnswer(text), std::invalid_argument) << text;
  }
}

TEST(ScriptedDialog, SetsControlsAndPressesTheButton) {
  ScriptedUserInterface scripted(
      Answers({" FRMsample : txtNAME= a\\;b = \\c ;chkAll=yes;optFirst; cboYear=2026 (COLUMN k) "
               ";optSecond=true;butOK"}));
  frmSample form;
  scripted.ShowModal(form);
  EXPECT_EQ(form.text.text(), " a;b = \\c ");
  EXPECT_TRUE(form.check.checked());
  EXPECT_TRUE(form.second.pressed());
  EXPECT_FALSE(form.first.pressed());
  EXPECT_EQ(form.list.list_index(), 1);
  EXPECT_EQ(form.pressed, "ok ");
  EXPECT_TRUE(scripted.unused_answers().empty());
}

TEST(ScriptedDialog, ListsTakeAnEntrysTextBeforeAPosition) {
  struct Case {
    const char* value;
    int list_index;
  };
  for (const Case& c : {Case{"2025", 0}, Case{"2", 2}, Case{"1", 0}, Case{"3", 2}}) {
    ScriptedUserInterface scripted(
        Answers({std::string("frmSample:cboYear=") + c.value + ";butOK"}));
    frmSample form;
    scripted.ShowModal(form);
    EXPECT_EQ(form.list.list_index(), c.list_index) << c.value;
  }
}

TEST(ScriptedDialog, ThatStaysVisibleTakesTheNextAnswer) {
  ScriptedUserInterface scripted(
      Answers({"frmSample:butMore", "frmSample:close", "frmSample:butCancel", "OK"}));
  frmSample form;
  form.refuses_close = true;
  scripted.ShowModal(form);
  EXPECT_EQ(form.pressed, "more cancel ");
  EXPECT_EQ(scripted.unused_answers().size(), 1u);
}

TEST(ScriptedDialog, CloseUnloadsIt) {
  ScriptedUserInterface scripted(Answers({"frmSample:close"}));
  frmSample form;
  scripted.ShowModal(form);
  EXPECT_TRUE(form.unloaded());
  EXPECT_EQ(form.pressed, "");
}

TEST(ScriptedDialog, RefusesAnswersThatDoNotFit) {
  struct Case {
    const char* answer;
    const char* problem;
  } const cases[] = {
      {"OK", "does not fit the dialog frmSample \"Sample Dialog\""},
      {"frmOther:butOK", "\"frmOther:butOK\" does not fit the dialog frmSample"},
      {"frmSample:txtNone=1;butOK", "names the control txtNone, which is not there"},
      {"frmSample:butNone", "names the control butNone, which is not there"},
      {"frmSample:butDisabled", "uses the control butDisabled, which is disabled"},
      {"frmSample:txtHidden=a;butOK", "uses the control txtHidden, which is hidden"},
      {"frmSample:lblPrompt=a;butOK", "sets the control lblPrompt, which takes no value"},
      {"frmSample:butMore=1;butOK", "sets the control butMore, which takes no value"},
      {"frmSample:txtName;butOK", "names the control txtName without a value"},
      {"frmSample:txtName", "ends with txtName, which is no button"},
      {"frmSample:chkAll=maybe;butOK", "gives the control chkAll the value \"maybe\""},
      {"frmSample:optFirst=no;butOK", "gives the control optFirst the value \"no\""},
      {"frmSample:cboYear=4;butOK", "whose entries are: 2025, 2026 (column K), 2"},
      {"frmSample:cboYear=0;butOK", "chooses \"0\" in the list cboYear"},
      {"frmSample:cboYear=;butOK", "chooses \"\" in the list cboYear"},
  };
  for (const Case& c : cases) {
    EXPECT_THAT(ErrorOf({c.answer}), AllOf(HasSubstr(c.problem), HasSubstr("Sample Dialog")));
  }
}

TEST(ScriptedDialog, WithoutAnswerNamesWhatIsMissing) {
  ScriptedUserInterface scripted;
  frmSample form;
  EXPECT_THROW(scripted.ShowModal(form), MissingAnswer);
  EXPECT_EQ(ErrorOf({}), "No answer is left for the dialog frmSample \"Sample Dialog\".");
}

TEST(ScriptedMessageBox, TakesOnlyAButtonItHas) {
  ScriptedUserInterface scripted(Answers({"ok", "Cancel", "YES", "no"}));
  EXPECT_EQ(scripted.MessageBox("a", kOkOnly | kCritical, "t"), MessageBoxResult::kOk);
  EXPECT_EQ(scripted.MessageBox("a", kOkCancel, "t"), MessageBoxResult::kCancel);
  EXPECT_EQ(scripted.MessageBox("a", kYesNo | kQuestion, "t"), MessageBoxResult::kYes);
  EXPECT_EQ(scripted.MessageBox("a", kYesNo | kDefaultButton2, "t"), MessageBoxResult::kNo);

  for (const char* answer : {"Yes", "Cancel", "frmSample:butOK"}) {
    ScriptedUserInterface wrong(Answers({answer}));
    try {
      wrong.MessageBox("Some text", kOkOnly, "Some title");
      ADD_FAILURE() << answer;
    } catch (const AnswerError& error) {
      EXPECT_THAT(error.what(), AllOf(HasSubstr(answer), HasSubstr("\"Some title\" (OK)"),
                                      HasSubstr("\"Some text\"")));
    }
  }
  try {
    scripted.MessageBox("Some text", kYesNo, "Some title");
    ADD_FAILURE();
  } catch (const MissingAnswer& error) {
    EXPECT_THAT(error.what(), AllOf(HasSubstr("\"Some title\""), HasSubstr("\"Some text\"")));
  }
}

TEST(ScriptedMessageBox, IsRecordedAndObservedWhoeverAnswers) {
  ScriptedUserInterface fallback(Answers({"No"}));
  ScriptedUserInterface scripted(Answers({"OK"}));
  scripted.SetFallback(&fallback);
  std::string seen;
  scripted.SetObserver([&](const ShownMessageBox& box) { seen += box.title + " "; });
  scripted.MessageBox("a", kOkCancel | kExclamation, "first");
  EXPECT_EQ(scripted.MessageBox("b", kYesNo, "second"), MessageBoxResult::kNo);
  EXPECT_EQ(seen, "first second ");
  ASSERT_EQ(scripted.message_boxes().size(), 2u);
  EXPECT_EQ(scripted.message_boxes()[0].style, kOkCancel | kExclamation);
  EXPECT_EQ(scripted.message_boxes()[1].text, "b");
  EXPECT_EQ(scripted.message_boxes()[1].result, MessageBoxResult::kNo);
}

TEST(WhenExhausted, YesPressesOkYesAndTheDefaultButton) {
  ScriptedUserInterface fallback;
  ScriptedUserInterface scripted(Answers({"Cancel", "frmSample:txtName=x;butMore"}),
                                 ScriptedUserInterface::WhenExhausted::kYes);
  scripted.SetFallback(&fallback);  // has no answers: would fail if it were asked
  EXPECT_EQ(scripted.MessageBox("a", kOkCancel, "t"), MessageBoxResult::kCancel);
  frmSample form;
  scripted.ShowModal(form);
  EXPECT_EQ(form.text.text(), "x");
  EXPECT_EQ(form.pressed, "more ok ");
  EXPECT_EQ(scripted.MessageBox("a", kOkCancel, "t"), MessageBoxResult::kOk);
  EXPECT_EQ(scripted.MessageBox("a", kYesNo | kDefaultButton2, "t"), MessageBoxResult::kYes);

  frmSample stuck;
  stuck.ok.SetEnabled(false);
  EXPECT_THROW(scripted.ShowModal(stuck), AnswerError);
}

TEST(WhenExhausted, TheFallbackShowsTheDialog) {
  ScriptedUserInterface fallback(Answers({"frmSample:butOK", "frmSample:butCancel"}));
  ScriptedUserInterface scripted(Answers({"frmSample:butMore"}));
  scripted.SetFallback(&fallback);
  frmSample half_answered;
  scripted.ShowModal(half_answered);
  EXPECT_EQ(half_answered.pressed, "more ok ");
  frmSample unanswered;
  scripted.ShowModal(unanswered);
  EXPECT_EQ(unanswered.pressed, "cancel ");
}

}  // namespace
}  // namespace vantora::ui
