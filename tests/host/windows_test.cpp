// The windows of a workbook and their panes as a macro sees them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/session.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

using host::XlWindowState;
using ::testing::HasSubstr;

class WindowsTest : public ::testing::Test {
 protected:
  WindowsTest() : session_(Session::Create({"Data", "Dashboard"})) {}

  host::ApplicationPtr App() { return session_->application(); }
  host::WindowPtr Active() { return App()->ActiveWindow(); }
  std::vector<host::WindowPtr> Windows() { return App()->ActiveWorkbook()->Windows(); }
  void Select(const char* cell) { session_->Range(cell)->Select(); }
  void Freeze(const char* cell) {
    Active()->SetFreezePanes(false);
    Select(cell);
    Active()->SetFreezePanes(true);
  }
  // Scroll positions of the window, then scroll columns of its panes.
  std::string Scrolls() {
    std::string text =
        std::to_string(Active()->ScrollRow()) + "," + std::to_string(Active()->ScrollColumn());
    for (const auto& pane : Active()->Panes()) text += " " + std::to_string(pane->ScrollColumn());
    return text;
  }
  void Reopen() {
    const testing::TemporaryFolder folder;
    const auto path = folder / "saved.xlsx";
    session_->Save(path);
    session_ = Session::Open(path);
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

  std::unique_ptr<Session> session_;
};

TEST_F(WindowsTest, ANewWindowLiesOnTopAndHasItsOwnSheetAndSelection) {
  Select("C3");
  auto old = Active();
  auto added = App()->ActiveWorkbook()->NewWindow();
  EXPECT_EQ(Windows().size(), 2u);
  EXPECT_EQ(App()->Selection()->Row(), 3) << "selected as in the window it was made from";
  session_->Worksheet("Dashboard")->Activate();
  Select("B9");
  old->Activate();
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Data");
  EXPECT_EQ(App()->Selection()->Row(), 3);
  added->Activate();
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Dashboard");
  EXPECT_EQ(App()->Selection()->Row(), 9);
  Reopen();
  ASSERT_EQ(Windows().size(), 2u);
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Data") << "the first window of the file is active";
  Windows()[1]->Activate();
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Dashboard");
  EXPECT_EQ(App()->Selection()->Row(), 9);
}

TEST_F(WindowsTest, TheWindowBelowAClosedOneBecomesActive) {
  auto second = App()->ActiveWorkbook()->NewWindow();
  session_->Worksheet("Dashboard")->Activate();
  auto third = App()->ActiveWorkbook()->NewWindow();
  third->Close();
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Dashboard");
  second->Close();
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Data");
  EXPECT_EQ(Windows().size(), 1u);
  EXPECT_THAT(Refusal([&] { second->Top(); }), HasSubstr("has been closed"));
  EXPECT_NE(Refusal([&] { second->Close(); }), "");
}

TEST_F(WindowsTest, AWorkbookWithoutWindowsIsClosedForMacrosButKept) {
  session_->Worksheet("Dashboard")->Activate();
  Active()->Close();
  EXPECT_EQ(App()->ActiveWorkbook(), nullptr);
  EXPECT_EQ(App()->ActiveSheet(), nullptr);
  EXPECT_EQ(App()->ActiveWindow(), nullptr);
  EXPECT_EQ(App()->Selection(), nullptr);
  EXPECT_TRUE(App()->Workbooks().empty());
  Reopen();
  EXPECT_EQ(App()->ActiveSheet()->Name(), "Dashboard");
  EXPECT_EQ(Windows().size(), 1u);
}

TEST_F(WindowsTest, PlacesAreInPointsAndSurviveSaving) {
  Active()->SetTop(295);
  Active()->SetLeft(-3.75);
  Active()->SetHeight(305.25);
  Active()->SetWidth(393);
  Reopen();
  EXPECT_EQ(Active()->Top(), 295);
  EXPECT_EQ(Active()->Left(), -3.75);
  EXPECT_EQ(Active()->Height(), 305.25);
  EXPECT_EQ(Active()->Width(), 393);
  EXPECT_THAT(Refusal([&] { Active()->SetHeight(-1); }), HasSubstr("Height"));
  EXPECT_THAT(Refusal([&] { Active()->SetWidth(-0.5); }), HasSubstr("Width"));
  EXPECT_EQ(Active()->Height(), 305.25);
}

TEST_F(WindowsTest, OnlyANormalWindowHasASizeToSet) {
  Active()->SetWindowState(XlWindowState::kMaximized);
  EXPECT_THAT(Refusal([&] { Active()->SetTop(5); }), HasSubstr("maximized"));
  EXPECT_THAT(Refusal([&] { Active()->SetLeft(5); }), HasSubstr("maximized"));
  EXPECT_THAT(Refusal([&] { Active()->SetWidth(5); }), HasSubstr("maximized"));
  Active()->SetWindowState(XlWindowState::kMinimized);
  EXPECT_THAT(Refusal([&] { Active()->SetHeight(5); }), HasSubstr("minimized"));
  EXPECT_EQ(Refusal([&] { Active()->SetTop(5); }), "");
  Active()->SetWindowState(XlWindowState::kNormal);
  EXPECT_EQ(Refusal([&] { Active()->SetHeight(100); }), "");
}

TEST_F(WindowsTest, PanesFreezeAboveAndLeftOfTheActiveCell) {
  const struct {
    const char* cell;
    std::string scrolls;
  } kCases[] = {
      {"E4", "4,5 1 5 1 5"},
      {"A4", "4,1 1 1"},
      {"G1", "1,7 1 7"},
  };
  for (const auto& test : kCases) {
    Freeze(test.cell);
    EXPECT_EQ(Scrolls(), test.scrolls) << test.cell;
    Reopen();
    EXPECT_EQ(Scrolls(), test.scrolls) << test.cell << ", saved";
  }
  Active()->SetFreezePanes(false);
  EXPECT_EQ(Scrolls(), "1,1 1");
}

TEST_F(WindowsTest, OnlyWhatIsShownIsFrozen) {
  Active()->SetScrollRow(10);
  Freeze("B12");
  EXPECT_EQ(Scrolls(), "12,2 1 2 1 2");
  Active()->SetFreezePanes(false);
  EXPECT_EQ(Active()->ScrollRow(), 10) << "what the top pane showed";
  // The cell lies above what is shown, so the window scrolls to it.
  Active()->SetScrollRow(100);
  Freeze("A4");
  EXPECT_EQ(Scrolls(), "4,1 1 1");
  // Far below, it comes to the middle.
  Freeze("A5000");
  EXPECT_EQ(Active()->ScrollRow(), 5000);
  Active()->SetFreezePanes(false);
  EXPECT_LT(Active()->ScrollRow(), 5000);
  EXPECT_GT(Active()->ScrollRow(), 4960);
}

TEST_F(WindowsTest, AtTheFirstCellShownPanesFreezeInTheMiddle) {
  Active()->SetHeight(54 + 20 * 15);
  Active()->SetWidth(45 + 10 * 48);
  Freeze("A1");
  EXPECT_EQ(Scrolls(), "11,6 1 6 1 6");
  // Nothing of the row above is shown.
  Active()->SetFreezePanes(false);
  session_->Range("A1")->SetRowsHidden(true);
  Freeze("A2");
  EXPECT_EQ(Scrolls(), "12,6 1 6 1 6");
}

TEST_F(WindowsTest, ColumnsCountAsWideAsTheyAre) {
  Active()->SetWidth(45 + 10 * 48);
  auto columns = App()->ActiveSheet()->Range(1, 1, 1, 3);
  columns->SetColumnWidth(17.86);
  App()->ActiveSheet()->Columns(2)->SetColumnsHidden(true);
  const double wide = App()->ActiveSheet()->Columns(1)->Width();
  ASSERT_GT(wide, 90);
  // Half of the space is two wide columns, with a hidden one between them, and one as it was.
  Active()->SetWidth(45 + 2 * (2 * wide + 48));
  Freeze("A1");
  EXPECT_EQ(Active()->ScrollColumn(), 5);
}

TEST_F(WindowsTest, ScrollingMovesTheScrollingPane) {
  Freeze("E4");
  Active()->SetScrollColumn(14);
  Active()->SetScrollRow(30);
  EXPECT_EQ(Scrolls(), "30,14 1 14 1 14");
  Active()->SetScrollColumn(1);
  Active()->SetScrollRow(1);
  EXPECT_EQ(Scrolls(), "4,5 1 5 1 5") << "the frozen part does not scroll";
  Active()->Panes()[3]->SetScrollColumn(9);
  Active()->Panes()[0]->SetScrollColumn(9);
  EXPECT_EQ(Scrolls(), "4,9 1 9 1 9");
  Freeze("A4");
  Active()->SetScrollColumn(14);
  EXPECT_EQ(Scrolls(), "4,14 14 14") << "without frozen columns all panes scroll";
  EXPECT_THAT(Refusal([&] { Active()->SetScrollRow(0); }), HasSubstr("ScrollRow"));
  EXPECT_THAT(Refusal([&] { Active()->SetScrollColumn(16385); }), HasSubstr("ScrollColumn"));
}

TEST_F(WindowsTest, SplitPanesScrollApartAndFreezeWhereTheyAreSplit) {
  session_->file().markup(0).FindOrInsert("sheetViews").text =
      "<sheetViews><sheetView workbookViewId=\"0\"><pane xSplit=\"2000\" topLeftCell=\"F1\"/>"
      "</sheetView></sheetViews>";
  EXPECT_EQ(Scrolls(), "1,1 1 6");
  Active()->SetFreezePanes(false);
  Active()->SetScrollColumn(2);
  Active()->Panes()[1]->SetScrollColumn(1);
  EXPECT_EQ(Scrolls(), "1,2 2 1");
  // 100 points hold two columns of 48.
  Active()->SetFreezePanes(true);
  EXPECT_EQ(Scrolls(), "1,4 2 4");
}

TEST_F(WindowsTest, EachSheetHasItsOwnPanes) {
  Freeze("E4");
  session_->Worksheet("Dashboard")->Activate();
  EXPECT_EQ(Scrolls(), "1,1 1");
  Active()->SetScrollRow(7);
  session_->Worksheet("Data")->Activate();
  EXPECT_EQ(Scrolls(), "4,5 1 5 1 5");
}

}  // namespace
}  // namespace vantora::embedded
