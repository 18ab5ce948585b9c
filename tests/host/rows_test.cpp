// Heights, hidden rows, the rows' outline and sheet protection as a macro sees them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/session.h"

namespace vantora::embedded {
namespace {

using testing::HasSubstr;

class RowsTest : public testing::Test {
 protected:
  host::RangePtr Row(int row) { return sheet_->Cells(row, 1); }
  host::RangePtr RowsTo(int first, int last) { return sheet_->Range(first, 1, last, 1); }
  std::string HiddenRows(int last) {
    std::string text;
    for (int row = 1; row <= last; ++row) text += Row(row)->RowsHidden() ? 'h' : '.';
    return text;
  }
  std::string CollapsedRows(int last) {
    std::string text;
    const RowTable& rows = session_->file().model().sheets[0]->rows;
    for (int row = 1; row <= last; ++row) text += rows.Of(row).collapsed ? 'c' : '.';
    return text;
  }
  // The text of the HostError 1004 that the call ends with; "" when it ends well.
  std::string Refusal(const std::function<void()>& call) {
    try {
      call();
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), HostError::kApplicationDefined);
      return error.description();
    }
    return "";
  }

  std::unique_ptr<Session> session_ = Session::Create({"Data"});
  host::WorksheetPtr sheet_ = session_->Worksheet("Data");
};

TEST_F(RowsTest, HidesWholeRowsAndKeepsTheirHeight) {
  RowsTo(3, 4)->SetRowHeight(30);
  RowsTo(2, 3)->SetRowsHidden(true);
  EXPECT_EQ(HiddenRows(5), ".hh..");
  EXPECT_TRUE(RowsTo(2, 3)->RowsHidden());
  EXPECT_FALSE(RowsTo(2, 4)->RowsHidden());
  EXPECT_EQ(Row(3)->RowHeight(), 0);
  EXPECT_EQ(Row(5)->RowHeight(), 15);
  RowsTo(1, 5)->SetRowsHidden(false);
  EXPECT_EQ(HiddenRows(5), ".....");
  EXPECT_EQ(Row(3)->RowHeight(), 30);
}

TEST_F(RowsTest, SubtotalsFollowRowsThatAreHiddenOrShown) {
  RowsTo(1, 4)->SetValue(Value(1));
  sheet_->Cells(1, 2)->SetFormula("=SUBTOTAL(109,A1:A4)*10");
  const auto subtotal = [&] { return sheet_->Cells(1, 2)->Value(); };
  EXPECT_EQ(subtotal(), Value(40));
  RowsTo(2, 3)->SetRowsHidden(true);
  EXPECT_EQ(subtotal(), Value(20));
  Row(4)->SetRowHeight(0);
  EXPECT_EQ(subtotal(), Value(10));
  RowsTo(1, 4)->SetRowsHidden(false);
  EXPECT_EQ(subtotal(), Value(40));
  // Grouping hides by levels.
  RowsTo(3, 4)->SetOutlineLevel(2);
  sheet_->OutlineShowLevels(1);
  EXPECT_EQ(subtotal(), Value(20));
}

TEST_F(RowsTest, TheListOfChangesNamesRowsThatDifferAndProtection) {
  RowsTo(2, 3)->SetRowsHidden(true);
  session_->RecordChanges();
  Row(3)->SetRowHeight(20);
  RowsTo(5, 6)->SetRowsHidden(true);
  Row(7)->SetRowHeight(0);
  Row(9)->SetRowHeight(30);
  sheet_->Protect();
  EXPECT_EQ(session_->Changes().others,
            (std::vector<std::string>{"sheet \"Data\" protected", "rows hidden at Data!5:7",
                                      "rows shown at Data!3:3",
                                      "row heights changed at Data!3:3, Data!9:9"}));
}

TEST_F(RowsTest, AHeightOfZeroHidesAndAnyOtherShows) {
  Row(2)->SetRowHeight(0);
  EXPECT_TRUE(Row(2)->RowsHidden());
  Row(2)->SetRowHeight(20.25);
  EXPECT_FALSE(Row(2)->RowsHidden());
  EXPECT_EQ(Row(2)->RowHeight(), 20.25);
  EXPECT_THAT(Refusal([&] { Row(2)->SetRowHeight(409.75); }), HasSubstr("RowHeight"));
  EXPECT_THAT(Refusal([&] { Row(2)->SetRowHeight(-1); }), HasSubstr("RowHeight"));
  EXPECT_EQ(Row(2)->RowHeight(), 20.25);
}

// Rows 2 to 6 are a group with the group 3 to 4 in it; 5 and 7 sum up.
TEST_F(RowsTest, ShowsTheOutlineUpToALevel) {
  RowsTo(2, 6)->SetOutlineLevel(2);
  RowsTo(3, 4)->SetOutlineLevel(3);
  Row(9)->SetRowsHidden(true);
  EXPECT_EQ(Row(3)->OutlineLevel(), 3);
  EXPECT_EQ(Row(7)->OutlineLevel(), 1);
  const struct {
    int levels;
    std::string hidden, collapsed;
  } kSteps[] = {
      {1, ".hhhhh..h", "......c.."},
      {2, "..hh....h", "....c...."},
      {3, "........h", "........."},
      {0, "........h", "........."},
  };
  for (const auto& step : kSteps) {
    sheet_->OutlineShowLevels(step.levels);
    EXPECT_EQ(HiddenRows(9), step.hidden) << step.levels;
    EXPECT_EQ(CollapsedRows(9), step.collapsed) << step.levels;
  }
  EXPECT_THAT(Refusal([&] { sheet_->OutlineShowLevels(9); }), HasSubstr("ShowLevels"));
  EXPECT_THAT(Refusal([&] { Row(1)->SetOutlineLevel(9); }), HasSubstr("OutlineLevel"));
  EXPECT_THAT(Refusal([&] { Row(1)->SetOutlineLevel(0); }), HasSubstr("OutlineLevel"));
}

TEST_F(RowsTest, AProtectedSheetKeepsItsRows) {
  Row(2)->SetOutlineLevel(2);
  sheet_->Protect();
  EXPECT_TRUE(sheet_->ProtectContents());
  EXPECT_THAT(Refusal([&] { Row(1)->SetRowsHidden(true); }), HasSubstr("\"Data\" is protected"));
  EXPECT_THAT(Refusal([&] { Row(1)->SetRowHeight(20); }), HasSubstr("RowHeight"));
  EXPECT_THAT(Refusal([&] { Row(1)->SetOutlineLevel(1); }), HasSubstr("OutlineLevel"));
  EXPECT_THAT(Refusal([&] { sheet_->OutlineShowLevels(1); }), HasSubstr("ShowLevels"));
  EXPECT_THAT(Refusal([&] { Row(1)->SetValue(Value(1.0)); }), HasSubstr("protected sheet"));
  sheet_->Unprotect();
  EXPECT_FALSE(sheet_->ProtectContents());
  Row(1)->SetRowsHidden(true);
  EXPECT_EQ(HiddenRows(2), "h.");
}

// Protects the sheet as a file would.
void SetProtection(WorkbookFile& file, const std::string& attributes) {
  file.markup(0).FindOrInsert("sheetProtection").text = "<sheetProtection" + attributes + "/>";
  file.model().sheets[0]->is_protected = true;
}

TEST_F(RowsTest, APasswordKeepsTheSheetProtectedInEitherForm) {
  for (const std::string password :
       {" password=\"CC3D\"", " algorithmName=\"SHA-512\" hashValue=\"x==\" saltValue=\"y==\""}) {
    SetProtection(session_->file(), password + " sheet=\"1\"");
    EXPECT_THAT(Refusal([&] { sheet_->Unprotect(); }), HasSubstr("password")) << password;
    sheet_->Protect();
    EXPECT_THAT(Refusal([&] { sheet_->Unprotect(); }), HasSubstr("password")) << password;
    EXPECT_TRUE(sheet_->ProtectContents());
  }
}

TEST_F(RowsTest, AProtectionMayAllowFormattingRows) {
  SetProtection(session_->file(), " sheet=\"1\" formatRows=\"0\"");
  Row(1)->SetRowsHidden(true);
  EXPECT_TRUE(Row(1)->RowsHidden());
  // Protecting anew allows nothing any more.
  sheet_->Protect();
  EXPECT_NE(Refusal([&] { Row(1)->SetRowsHidden(false); }), "");
}

TEST_F(RowsTest, ProtectionIsWrittenAtItsPlace) {
  auto names = [&] {
    std::string text;
    for (const MarkupElement& element : session_->file().markup(0).elements) {
      text += element.name + " ";
    }
    return text;
  };
  session_->file().markup(0).FindOrInsert("mergeCells").text = "<mergeCells/>";
  const std::string before = names();
  sheet_->Protect();
  EXPECT_EQ(names(), "dimension sheetData sheetProtection mergeCells ");
  EXPECT_EQ(session_->file().markup(0).Find("sheetProtection")->text,
            "<sheetProtection sheet=\"1\" objects=\"1\" scenarios=\"1\"/>");
  sheet_->Unprotect();
  EXPECT_EQ(names(), before);
}

}  // namespace
}  // namespace vantora::embedded
