// Worksheets that are added to a package.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class AddedSheets : public PackageTest {
 protected:
  AddedSheets() {
    parts = OneSheet("<sheetData/>",
                     "<definedNames><definedName name=\"local\" localSheetId=\"0\">Data!$A$1"
                     "</definedName></definedNames>");
  }
  // Saves and opens the result.
  std::unique_ptr<WorkbookFile> Again(WorkbookFile& file) {
    file.Save(Path("again.xlsx"));
    return WorkbookFile::Open(Path("again.xlsx"));
  }
  static std::vector<std::string> Tabs(const WorkbookFile& file) {
    std::vector<std::string> names;
    for (int id : const_cast<WorkbookFile&>(file).model().tab_order) {
      names.push_back(const_cast<WorkbookFile&>(file).model().NameOf(id));
    }
    return names;
  }

  // Writes the windows as they are, the first one with that active sheet.
  static void WriteWindows(WorkbookFile& file, int active_sheet) {
    std::vector<WindowToWrite> windows;
    for (int i = 0; i < static_cast<int>(file.windows().size()); ++i) {
      windows.push_back({i, file.windows()[i], file.active_sheet_of(i), {}});
    }
    windows.front().active_sheet = active_sheet;
    file.WriteWindows(windows);
  }

  Parts parts;
};

TEST_F(AddedSheets, AreListedWithTheirPartsInTabOrder) {
  auto file = OpenParts(parts);
  file->AddSheet("Behind & last", 1);
  const int first = file->AddSheet("In front", 0);
  WriteWindows(*file, first);
  auto again = Again(*file);
  EXPECT_THAT(Tabs(*again), ElementsAre("In front", "Data", "Behind & last"));
  EXPECT_EQ(again->active_sheet(), 0);
  const std::string workbook = again->package().Read(kWorkbookPart);
  EXPECT_THAT(workbook, HasSubstr("name=\"Behind &amp; last\" sheetId=\"3\" r:id="));
  // What belonged to the first tab belongs to the second now.
  EXPECT_THAT(workbook, HasSubstr("name=\"local\" localSheetId=\"1\""));
  ASSERT_EQ(again->model().names.size(), 1u);
  EXPECT_EQ(again->model().names[0].scope, 1);
  for (int id : {0, 2}) {
    EXPECT_THAT(again->package().ContentTypeOf(again->part_of(id)), HasSubstr("worksheet+xml"));
  }
}

TEST_F(AddedSheets, KeepTheViewsOfOtherTabs) {
  std::string& workbook = parts[kWorkbookPart];
  workbook.insert(workbook.find("<sheets>"),
                  "<bookViews><workbookView firstSheet=\"0\"/><workbookView activeTab=\"0\"/>"
                  "</bookViews>");
  auto file = OpenParts(parts);
  file->AddSheet("In front", 0);
  WriteWindows(*file, 0);
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("<workbookView firstSheet=\"1\" activeTab=\"1\"/>"
                        "<workbookView activeTab=\"1\"/>"));
}

// A save, a new name and further cells, and another save.
TEST_F(AddedSheets, MayChangeBetweenSaves) {
  auto file = OpenParts(parts);
  const int added = file->AddSheet("Draft", 1);
  file->Save(Path("first.xlsx"));
  file->model().RenameSheet(added, "Final");
  CellStore& cells = file->model().sheets[added]->cells;
  cells.SetConstant({2, 2}, CellValue::Text(file->model().strings.Intern("bell\x07")));
  auto again = Again(*file);
  EXPECT_THAT(Tabs(*again), ElementsAre("Data", "Final"));
  // What XML can't hold is escaped.
  EXPECT_THAT(again->package().Read("xl/sharedStrings.xml"), HasSubstr("bell_x0007_"));
  const Cell cell = again->model().sheets[1]->cells.Get({2, 2});
  EXPECT_EQ(again->model().strings[cell.value.text], "bell\x07");
}

}  // namespace
}  // namespace vantora::embedded
