#include "dialogs/frm_copy_worksheet.h"

#include <gtest/gtest.h>

#include "ui/scripted/scripted_user_interface.h"

namespace vantora {
namespace {

class CopyDialog : public ::testing::Test {
 protected:
  CopyDialog() {
    dialog.SetSourceNames({"Plan", "Budget"});
    dialog.SetTargetNames({"Model.xlsm", "Other.xlsm"});
  }
  void Show(const std::string& answer) {
    ui::ScriptedUserInterface user_interface({ui::ParseAnswer(answer)});
    user_interface.ShowModal(dialog);
  }
  TextBox& result() { return static_cast<TextBox&>(*dialog.Find("txtResult")); }

  frmCopyWorksheet dialog;
};

TEST_F(CopyDialog, BeginsWithTheEntireSheetAndWithoutThePalette) {
  EXPECT_FALSE(dialog.IsSourceSelectionARange());
  EXPECT_FALSE(dialog.CopyColors());
  EXPECT_TRUE(dialog.IsEmptySourceName());
  EXPECT_TRUE(dialog.IsEmptyTargetName());
  EXPECT_TRUE(dialog.IsCancelled());
}

TEST_F(CopyDialog, TakesTheNamesWhenTheCopyButtonIsPressed) {
  dialog.SetSourceRangeName("Plan");
  dialog.SetTargetWorkbookName("Model.xlsm");
  Show(
      "frmCopyWorksheet:cboSourceWorksheet=Budget;cboTargetWorkbook=Other.xlsm;butSource1;"
      "chkCopyColors=yes;butCopy");
  EXPECT_FALSE(dialog.IsCancelled());
  EXPECT_EQ(dialog.SourceWorksheetName(), "Budget");
  EXPECT_EQ(dialog.TargetWorkbookName(), "Other.xlsm");
  EXPECT_EQ(dialog.SourceRangeName(), "Budget selected area");
  EXPECT_TRUE(dialog.CopyColors());
}

TEST_F(CopyDialog, KeepsTheNamesWhenItIsCancelledOrClosed) {
  dialog.SetSourceRangeName("Plan");
  dialog.SetTargetWorkbookName("Model.xlsm");
  for (const char* way : {"butCancel", "close"}) {
    Show("frmCopyWorksheet:cboSourceWorksheet=Budget;" + std::string(way));
    EXPECT_TRUE(dialog.IsCancelled()) << way;
    EXPECT_EQ(dialog.SourceRangeName(), "Plan entire sheet") << way;
  }
}

// Such a name is the active sheet's where that is no worksheet.
TEST_F(CopyDialog, GivesBackANameThatIsNoEntry) {
  dialog.SetSourceWorksheetName("Chart1");
  Show("frmCopyWorksheet:butCopy");
  EXPECT_EQ(dialog.SourceWorksheetName(), "Chart1");
}

TEST_F(CopyDialog, ShowsItsMessageBoldAndBlueForReadingOnly) {
  dialog.SetMessage("Copy is complete.");
  EXPECT_EQ(result().text(), "Copy is complete.");
  EXPECT_TRUE(result().bold());
  EXPECT_EQ(result().fore_color(), 0xFF0000u);
  EXPECT_THROW(Show("frmCopyWorksheet:txtResult=other;butCancel"), ui::AnswerError);
}

TEST_F(CopyDialog, WithoutTheCopyButtonOnlyCancelIsLeft) {
  dialog.EnableCopy(false);
  EXPECT_THROW(Show("frmCopyWorksheet:butCopy"), ui::AnswerError);
  // Enter then means Cancel.
  ui::ScriptedUserInterface enter({}, ui::ScriptedUserInterface::WhenExhausted::kYes);
  enter.ShowModal(dialog);
  EXPECT_TRUE(dialog.IsCancelled());
}

}  // namespace
}  // namespace vantora
