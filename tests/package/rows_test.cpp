// Rows that have something of their own beside their cells, read from a sheet's part and written
// into it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class RowsPackageTest : public PackageTest {
 protected:
  static SheetModel& Sheet(WorkbookFile& file) { return *file.model().sheets[0]; }
  static void EditRow(SheetModel& sheet, int row, const std::function<void(RowFormat&)>& edit) {
    sheet.rows.EditRows(row, row, edit);
    sheet.rows_changed = true;
  }
  // The sheet's part, made of these elements, after an edit of the sheet and a save.
  std::string Edited(const std::string& elements,
                     const std::function<void(SheetModel&)>& edit) const {
    auto file = OpenParts(OneSheet(elements));
    edit(Sheet(*file));
    return Saved(*file, kSheetPart);
  }
};

TEST_F(RowsPackageTest, ReadsWhatRowsHaveOfTheirOwn) {
  auto file = OpenParts(OneSheet(
      "<sheetFormatPr defaultRowHeight=\"12.75\"/><sheetData><row r=\"1\" hidden=\"1\"/>"
      "<row r=\"2\" spans=\"1:2\" ht=\"30.75\" customHeight=\"true\"><c r=\"A2\"><v>1</v></c></row>"
      "<row r=\"4\" outlineLevel=\"2\" hidden=\"1\"/><row r=\"5\" collapsed=\"1\" ht=\"?\"/>"
      "</sheetData>"));
  const SheetModel& sheet = Sheet(*file);
  EXPECT_EQ(sheet.standard_row_height, 12.75);
  const std::vector<RowTable::Entry> expected = {
      {1, {.height = {}, .hidden = true}},
      {2, {.height = 30.75, .custom_height = true}},
      {4, {.height = {}, .hidden = true, .outline_level = 2}},
      {5, {.height = {}, .collapsed = true}},
  };
  EXPECT_EQ(sheet.rows.entries(), expected);
}

TEST_F(RowsPackageTest, KnowsWhichRowsAFilterChoosesFrom) {
  const std::string rows = "<sheetData><row r=\"3\" hidden=\"1\"/></sheetData>";
  const auto filtered = OpenParts(
      OneSheet(rows + "<autoFilter ref=\"A2:B5\"><filterColumn colId=\"0\"/></autoFilter>"));
  EXPECT_FALSE(Sheet(*filtered).IsFiltered(2));
  EXPECT_TRUE(Sheet(*filtered).IsFiltered(3));
  EXPECT_TRUE(Sheet(*filtered).IsFiltered(5));
  EXPECT_FALSE(Sheet(*filtered).IsFiltered(6));
  // A filter without a condition hides nothing.
  const auto idle = OpenParts(OneSheet(rows + "<autoFilter ref=\"A2:B5\"/>"));
  EXPECT_FALSE(Sheet(*idle).IsFiltered(3));
}

TEST_F(RowsPackageTest, WritesOnlyTheAttributesThatChange) {
  const struct {
    std::string rows;
    int row;
    std::function<void(RowFormat&)> edit;
    std::string written;
  } kCases[] = {
      {"<row r='1' custom:x='1' xmlns:custom='urn:c'><c r='A1'/></row>", 1,
       [](RowFormat& row) { row.hidden = true; },
       "<row r='1' custom:x='1' xmlns:custom='urn:c' hidden=\"1\"><c r='A1'/></row>"},
      {"<row r=\"1\" hidden=\"0\" thickBot=\"1\"/>", 1, [](RowFormat& row) { row.hidden = true; },
       "<row r=\"1\" hidden=\"1\" thickBot=\"1\"/>"},
      {"<row r=\"1\" ht='20.50' hidden=\"true\" s=\"3\"/>", 1,
       [](RowFormat& row) { row.hidden = false; }, "<row r=\"1\" ht='20.50' s=\"3\"/>"},
      {"<row r=\"1\" ht=\"20\" customHeight=\"1\" outlineLevel=\"1\" collapsed=\"1\"/>", 1,
       [](RowFormat& row) { row = {}; }, "<row r=\"1\"/>"},
      {"<row r=\"1\"/><row r=\"9\"/>", 4,
       [](RowFormat& row) {
         row = {.height = 15.75,
                .custom_height = true,
                .hidden = true,
                .collapsed = true,
                .outline_level = 2};
       },
       "<row r=\"1\"/><row r=\"4\" ht=\"15.75\" hidden=\"1\" customHeight=\"1\" outlineLevel=\"2\" "
       "collapsed=\"1\"/><row r=\"9\"/>"},
      {"<row><c><v>1</v></c></row><row/>", 2, [](RowFormat& row) { row.height = 20; },
       "<row r=\"1\"><c r=\"A1\"><v>1</v></c></row><row r=\"2\" ht=\"20\"/>"},
  };
  for (const auto& test : kCases) {
    EXPECT_EQ(SheetData(Edited("<sheetData>" + test.rows + "</sheetData>",
                               [&](SheetModel& sheet) { EditRow(sheet, test.row, test.edit); })),
              test.written);
  }
}

TEST_F(RowsPackageTest, WritesFormatsOfWholeRows) {
  auto edit = [](SheetModel& sheet) {
    sheet.row_styles.erase(1);
    sheet.row_styles[2] = 5;
    sheet.row_styles[200] = 7;
    sheet.rows_changed = true;
  };
  EXPECT_EQ(SheetData(Edited("<sheetData><row r=\"1\" s=\"3\" customFormat=\"1\" ht=\"20\"/>"
                             "<row r=\"2\" s=\"3\"/></sheetData>",
                             edit)),
            "<row r=\"1\" ht=\"20\"/><row r=\"2\" s=\"5\" customFormat=\"1\"/>"
            "<row r=\"200\" s=\"7\" customFormat=\"1\"/>");
}

// Bands of rows without cells lie between them, and a row gets a cell and a height at once.
TEST_F(RowsPackageTest, WritesNewRowsInOrderAmongNewCells) {
  EXPECT_EQ(SheetData(Edited("<sheetData/>",
                             [](SheetModel& sheet) {
                               EditRow(sheet, 1, [](RowFormat& row) { row.hidden = true; });
                               EditRow(sheet, 500, [](RowFormat& row) { row.hidden = true; });
                               EditRow(sheet, 1000, [](RowFormat& row) { row.height = 20; });
                               sheet.cells.SetConstant({498, 1}, CellValue::Number(1));
                               sheet.cells.SetConstant({1000, 2}, CellValue::Number(2));
                             })),
            "<row r=\"1\" hidden=\"1\"/><row r=\"498\"><c r=\"A498\"><v>1</v></c></row>"
            "<row r=\"500\" hidden=\"1\"/><row r=\"1000\" ht=\"20\"><c r=\"B1000\"><v>2</v></c>"
            "</row>");
}

TEST_F(RowsPackageTest, RowsAreHiddenWhereTheSheetSaysSo) {
  const std::string sheet =
      "<sheetFormatPr defaultRowHeight=\"15\" zeroHeight=\"1\"/><sheetData><row r=\"2\"/>"
      "</sheetData>";
  auto file = OpenParts(OneSheet(sheet));
  EXPECT_TRUE(Sheet(*file).rows.Of(1).hidden);
  EXPECT_FALSE(Sheet(*file).rows.Of(2).hidden);
  EXPECT_EQ(SheetData(Edited(sheet,
                             [](SheetModel& sheet) {
                               EditRow(sheet, 1, [](RowFormat& row) { row.hidden = false; });
                               EditRow(sheet, 2, [](RowFormat& row) { row.hidden = true; });
                               sheet.cells.SetConstant({3, 1}, CellValue::Number(1));
                             })),
            "<row r=\"1\"/><row r=\"2\" hidden=\"1\"/>"
            "<row r=\"3\" hidden=\"1\"><c r=\"A3\"><v>1</v></c></row>");
}

TEST_F(RowsPackageTest, TheSheetSaysHowDeepTheOutlineIs) {
  auto group = [](SheetModel& sheet) {
    EditRow(sheet, 2, [](RowFormat& row) { row.outline_level = 2; });
  };
  EXPECT_THAT(
      Edited("<sheetViews><sheetView workbookViewId=\"0\"/></sheetViews><sheetData/>", group),
      HasSubstr("</sheetViews><sheetFormatPr defaultRowHeight=\"15\" outlineLevelRow=\"2\"/>"
                "<sheetData>"));
  EXPECT_THAT(
      Edited("<sheetFormatPr baseColWidth=\"9\" defaultRowHeight=\"12\"/><sheetData/>", group),
      HasSubstr("<sheetFormatPr baseColWidth=\"9\" defaultRowHeight=\"12\" "
                "outlineLevelRow=\"2\"/>"));
  auto hide = [](SheetModel& sheet) {
    EditRow(sheet, 2, [](RowFormat& row) { row.hidden = true; });
  };
  EXPECT_THAT(Edited("<sheetData/>", hide), Not(HasSubstr("sheetFormatPr")));
}

// Hiding and showing again leaves the part as it was.
TEST_F(RowsPackageTest, RowsPutBackKeepEveryByte) {
  auto workbooks = ModelWorkbooks();
  if (workbooks.empty()) GTEST_SKIP() << "There are no model workbooks beside the checkout.";
  for (const auto& path : workbooks) {
    auto file = WorkbookFile::Open(path);
    for (int id = 0; id < static_cast<int>(file->model().sheets.size()); ++id) {
      SheetModel& sheet = *file->model().sheets[id];
      if (!sheet.is_worksheet) continue;
      const bool hidden = sheet.rows.Of(1).hidden;
      EditRow(sheet, 1, [&](RowFormat& row) { row.hidden = !hidden; });
      EditRow(sheet, 1, [&](RowFormat& row) { row.hidden = hidden; });
    }
    file->Save(Path("saved.xlsm"));
    auto before = OpcPackage::Open(path);
    auto after = OpcPackage::Open(Path("saved.xlsm"));
    for (const std::string& part : before->PartNames()) {
      EXPECT_EQ(after->Read(part), before->Read(part)) << path << " " << part;
    }
  }
}

}  // namespace
}  // namespace vantora::embedded
