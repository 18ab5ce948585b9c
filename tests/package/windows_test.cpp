// The workbook's windows and how each shows the sheets, read from a package and written into it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kFrozen[] =
    "<pane xSplit=\"4\" ySplit=\"3\" topLeftCell=\"N9\" activePane=\"bottomRight\" "
    "state=\"frozen\"/><selection pane=\"topRight\" activeCell=\"E1\" sqref=\"E1\"/>"
    "<selection pane=\"bottomLeft\" activeCell=\"A4\" sqref=\"A4\"/>"
    "<selection pane=\"bottomRight\" activeCell=\"F10\" sqref=\"F10:G12\"/>";

SheetView FrozenView() {
  SheetView view;
  view.panes = SheetView::Panes::kFrozen;
  view.split_columns = 4;
  view.split_rows = 3;
  view.scrolled = {9, 14};
  view.selection = {{10, 6, 12, 7}};
  view.active_cell = {10, 6};
  return view;
}

std::string Views(const std::string& views) { return "<sheetViews>" + views + "</sheetViews>"; }

// A workbook with two windows on one sheet.
Parts TwoWindows(const std::string& views) {
  Parts parts = OneSheet(Views(views) + "<sheetData/>");
  parts[kWorkbookPart].insert(
      parts[kWorkbookPart].find("<sheets>"),
      "<bookViews><workbookView xWindow=\"0\" yWindow=\"5900\" windowWidth='28560' "
      "windowHeight=\"6000\" tabRatio=\"500\"/>\n<workbookView minimized=\"1\" xWindow=\"20\" "
      "yWindow=\"0\" windowWidth=\"28560\" windowHeight=\"5900\"/></bookViews>");
  return parts;
}

// The windows as they stand in the file.
std::vector<WindowToWrite> AsOpened(WorkbookFile& file) {
  std::vector<WindowToWrite> windows;
  for (int i = 0; i < static_cast<int>(file.windows().size()); ++i) {
    windows.push_back({i, file.windows()[i], file.active_sheet_of(i), {}});
    windows.back().sheets[0] = ReadSheetView(file.markup(0), i);
  }
  return windows;
}

class WindowsPackageTest : public PackageTest {
 protected:
  // The <sheetViews> of a sheet with these views of the only window after a save with `view`.
  std::string Written(const std::string& views, const SheetView& view) const {
    auto file = OpenParts(OneSheet(views + "<sheetData/>"));
    file->WriteWindows({{0, file->windows()[0], 0, {{0, view}}}});
    const std::string saved = Saved(*file, kSheetPart);
    const std::size_t begin = saved.find("<sheetViews>");
    if (begin == std::string::npos) return "";
    return saved.substr(begin, saved.find("<sheetData/>") - begin);
  }
};

TEST_F(WindowsPackageTest, ReadsPanesScrollAndSelection) {
  auto read = [&](const std::string& view) {
    auto file = OpenParts(OneSheet(Views(view) + "<sheetData/>"));
    return ReadSheetView(file->markup(0), 0);
  };
  EXPECT_EQ(read("<sheetView workbookViewId=\"0\"/>"), SheetView{});
  EXPECT_EQ(read("<sheetView workbookViewId=\"0\">" + std::string(kFrozen) + "</sheetView>"),
            FrozenView());
  SheetView scrolled;
  scrolled.top_left = scrolled.scrolled = {7, 3};
  EXPECT_EQ(read("<sheetView topLeftCell=\"C7\" workbookViewId=\"0\"/>"), scrolled);
  // Frozen rows alone; the panes say nothing of where they are scrolled to.
  SheetView rows;
  rows.panes = SheetView::Panes::kFrozen;
  rows.split_rows = 2;
  rows.top_left = {5, 3};
  rows.scrolled = {7, 3};
  EXPECT_EQ(read("<sheetView topLeftCell=\"C5\" workbookViewId=\"0\"><pane ySplit=\"2\" "
                 "activePane=\"bottomLeft\" state=\"frozenSplit\"/></sheetView>"),
            rows);
  SheetView split;
  split.panes = SheetView::Panes::kSplit;
  split.split_columns = 2400.5;
  split.scrolled = {1, 6};
  EXPECT_EQ(read("<sheetView workbookViewId=\"0\"><pane xSplit=\"2400.5\" topLeftCell=\"F1\"/>"
                 "</sheetView>"),
            split);
}

TEST_F(WindowsPackageTest, WritesOnlyWhatDiffers) {
  const std::string frozen = kFrozen;
  SheetView one_pane;
  SheetView scrolled = FrozenView();
  scrolled.scrolled = {4, 5};
  SheetView selected = FrozenView();
  selected.selection = {{4, 5, 4, 5}};
  selected.active_cell = {4, 5};
  SheetView rows;
  rows.panes = SheetView::Panes::kFrozen;
  rows.split_rows = 3;
  rows.top_left = {1, 14};
  rows.scrolled = {4, 14};
  const struct {
    std::string before, inside;
    SheetView view;
    std::string after;
  } kCases[] = {
      {"zoomScale='80' workbookViewId=\"0\"", frozen, FrozenView(),
       "<sheetView zoomScale='80' workbookViewId=\"0\">" + frozen + "</sheetView>"},
      {"workbookViewId=\"0\"", frozen + "<extLst/>", one_pane,
       "<sheetView workbookViewId=\"0\"><extLst/></sheetView>"},
      {"showGridLines=\"0\" workbookViewId=\"0\"", "", rows,
       "<sheetView topLeftCell=\"N1\" showGridLines=\"0\" workbookViewId=\"0\"><pane ySplit=\"3\" "
       "topLeftCell=\"N4\" activePane=\"bottomLeft\" state=\"frozen\"/><selection "
       "pane=\"bottomLeft\" activeCell=\"A1\" sqref=\"A1\"/></sheetView>"},
      {"topLeftCell=\"C7\" workbookViewId=\"0\"", "", one_pane,
       "<sheetView workbookViewId=\"0\"></sheetView>"},
  };
  for (const auto& test : kCases) {
    EXPECT_EQ(
        Written(Views("<sheetView " + test.before + ">" + test.inside + "</sheetView>"), test.view),
        Views(test.after));
  }
  EXPECT_THAT(
      Written(Views("<sheetView workbookViewId=\"0\">" + frozen + "</sheetView>"), scrolled),
      HasSubstr("<pane xSplit=\"4\" ySplit=\"3\" topLeftCell=\"E4\" activePane"));
  EXPECT_THAT(
      Written(Views("<sheetView workbookViewId=\"0\">" + frozen + "</sheetView>"), selected),
      HasSubstr("sqref=\"A4\"/><selection pane=\"bottomRight\" activeCell=\"E4\" "
                "sqref=\"E4\"/></sheetView>"));
  EXPECT_EQ(Written("", SheetView{}), "");
  EXPECT_EQ(Written("", FrozenView()),
            Views("<sheetView workbookViewId=\"0\"><pane xSplit=\"4\" ySplit=\"3\" "
                  "topLeftCell=\"N9\" activePane=\"bottomRight\" state=\"frozen\"/><selection "
                  "pane=\"topRight\" activeCell=\"N1\" sqref=\"N1\"/><selection "
                  "pane=\"bottomLeft\" activeCell=\"A9\" sqref=\"A9\"/><selection "
                  "pane=\"bottomRight\" activeCell=\"F10\" sqref=\"F10:G12\"/></sheetView>"));
}

TEST_F(WindowsPackageTest, TwoWindowsStayByteForByte) {
  const Parts parts =
      TwoWindows("\n<sheetView tabSelected=\"1\" workbookViewId=\"0\">" + std::string(kFrozen) +
                 "</sheetView>\n<sheetView workbookViewId='1' topLeftCell=\"C5\"/>");
  auto file = OpenParts(parts);
  ASSERT_EQ(file->windows().size(), 2u);
  EXPECT_EQ(file->windows()[0].top, 295);
  EXPECT_EQ(file->windows()[0].width, 1428);
  EXPECT_TRUE(file->windows()[1].minimized);
  EXPECT_EQ(ReadSheetView(file->markup(0), 0), FrozenView());
  EXPECT_EQ(ReadSheetView(file->markup(0), 1).top_left, (CellAddress{5, 3}));
  file->WriteWindows(AsOpened(*file));
  EXPECT_EQ(Saved(*file, kWorkbookPart), parts.at(kWorkbookPart));
  EXPECT_EQ(Saved(*file, kSheetPart), parts.at(kSheetPart));
}

TEST_F(WindowsPackageTest, AMovedWindowIsPatched) {
  auto file =
      OpenParts(TwoWindows("<sheetView workbookViewId=\"0\"/><sheetView "
                           "workbookViewId=\"1\"/>"));
  auto windows = AsOpened(*file);
  windows[0].view.top = 0;
  windows[0].view.height = 600.25;
  windows[1].view.minimized = false;
  file->WriteWindows(windows);
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("<bookViews><workbookView xWindow=\"0\" yWindow=\"0\" windowWidth='28560' "
                        "windowHeight=\"12005\" tabRatio=\"500\"/>"));
  EXPECT_THAT(Saved(*file, kWorkbookPart), HasSubstr("<workbookView minimized=\"0\" xWindow"));
}

// The first window goes, a new one comes: the views of the sheets follow.
TEST_F(WindowsPackageTest, WindowsComeAndGo) {
  auto file =
      OpenParts(TwoWindows("<sheetView tabSelected=\"1\" workbookViewId=\"0\"/><sheetView "
                           "zoomScale=\"70\" workbookViewId=\"1\"/>"));
  auto windows = AsOpened(*file);
  windows.erase(windows.begin());
  windows.push_back({std::nullopt, {.width = 393, .height = 600}, 0, {{0, FrozenView()}}});
  file->WriteWindows(windows);
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("<bookViews><workbookView minimized=\"1\" xWindow=\"20\" yWindow=\"0\" "
                        "windowWidth=\"28560\" windowHeight=\"5900\"/><workbookView xWindow=\"0\" "
                        "yWindow=\"0\" windowWidth=\"7860\" windowHeight=\"12000\"/></bookViews>"));
  EXPECT_THAT(Saved(*file, kSheetPart),
              HasSubstr("<sheetViews><sheetView zoomScale=\"70\" workbookViewId=\"0\"/><sheetView "
                        "tabSelected=\"1\" workbookViewId=\"1\"><pane xSplit=\"4\""));
  // Written again as they are now, they stay.
  const std::string before = Saved(*file, kSheetPart);
  windows[1].origin = 1;
  windows[0].origin = 0;
  file->WriteWindows(windows);
  EXPECT_EQ(Saved(*file, kSheetPart), before);
}

TEST_F(WindowsPackageTest, TheViewOfAClosedWindowGoes) {
  const struct {
    int closed;
    const char* views;
  } kCases[] = {
      {0, "<sheetViews><sheetView zoomScale=\"70\" workbookViewId=\"0\"/></sheetViews>"},
      {1, "<sheetViews><sheetView tabSelected=\"1\" workbookViewId=\"0\"/></sheetViews>"}};
  for (const auto& test : kCases) {
    auto file =
        OpenParts(TwoWindows("<sheetView tabSelected=\"1\" workbookViewId=\"0\"/><sheetView "
                             "zoomScale=\"70\" workbookViewId=\"1\"/>"));
    auto windows = AsOpened(*file);
    windows.erase(windows.begin() + test.closed);
    file->WriteWindows(windows);
    EXPECT_THAT(Saved(*file, kSheetPart), HasSubstr(test.views)) << test.closed;
  }
}

TEST_F(WindowsPackageTest, ASheetWithoutViewsGetsThemForASecondWindow) {
  auto file = OpenParts(OneSheet("<sheetPr/><sheetData/>"));
  file->WriteWindows({{0, {}, 0, {}}, {std::nullopt, {.width = 393, .height = 600}, 0, {}}});
  EXPECT_THAT(Saved(*file, kSheetPart),
              HasSubstr("<sheetPr/><sheetViews><sheetView workbookViewId=\"0\"/><sheetView "
                        "tabSelected=\"1\" workbookViewId=\"1\"/></sheetViews><sheetData/>"));
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("<bookViews><workbookView/><workbookView xWindow=\"0\" yWindow=\"0\" "
                        "windowWidth=\"7860\" windowHeight=\"12000\"/></bookViews><sheets>"));
}

}  // namespace
}  // namespace vantora::embedded
