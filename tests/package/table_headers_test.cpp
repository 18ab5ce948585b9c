// Tables and their header cells after edits.
#include "package/table_headers.h"

#include <gmock/gmock.h>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

constexpr char kTablePart[] = "xl/tables/table1.xml";
constexpr char kRows[] =
    "<sheetData><row r=\"2\"><c r=\"B2\" s=\"1\" t=\"str\"><v>Alpha</v></c>"
    "<c r=\"C2\" t=\"str\"><v>Two&#10;lines</v></c><c r=\"D2\" t=\"str\"><v>Total</v></c></row>"
    "<row r=\"3\"><c r=\"B3\"><v>1</v></c></row></sheetData>";

std::string Table(std::string_view attributes, std::string_view columns) {
  return "<table id=\"1\" name=\"T\" displayName=\"T\" " + std::string(attributes) +
         "><tableColumns count=\"3\">" + std::string(columns) + "</tableColumns></table>";
}

const std::string kTable =
    Table("ref=\"B2:D3\"",
          "<tableColumn id=\"1\" name=\"Alpha\"/><tableColumn id=\"2\" name=\"Two_x000a_lines\"/>"
          "<tableColumn id=\"3\" name=\"Total\"/>");

class TableHeadersTest : public PackageTest {
 protected:
  void Open(const std::string& rows = kRows, const std::string& table = kTable) {
    Parts parts = OneSheet(rows + "<tableParts count=\"1\"/>");
    parts[kTablePart] = table;
    parts["xl/worksheets/_rels/sheet1.xml.rels"] =
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
        "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
        "relationships/table\" Target=\"../tables/table1.xml\"/></Relationships>";
    file_ = OpenParts(parts);
  }
  CellStore& cells() { return file_->model().sheets[0]->cells; }
  CellValue Text(std::string_view text) {
    return CellValue::Text(file_->model().strings.Intern(text));
  }
  void InsertColumn(int column) {
    cells().InsertColumns(column, 1);
    file_->AddInsertion({0, column, 1});
  }
  // What the header cell holds.
  std::string Header(int column) {
    Cell cell = cells().Get({2, column});
    if (cell.value.kind != CellKind::kText) return "no text";
    return file_->model().strings[cell.value.text];
  }
  // The columns as the saved part has them.
  std::string SavedColumns() {
    std::string part = Saved(*file_, kTablePart);
    std::size_t begin = part.find("<tableColumn ");
    return part.substr(begin, part.find("</tableColumns>") - begin);
  }

  std::unique_ptr<WorkbookFile> file_;
};

TEST_F(TableHeadersTest, TheModelKnowsTheTableAndItsColumns) {
  Open(kRows, Table("ref=\"B2:D9\" totalsRowCount=\"1\"",
                    "<tableColumn id=\"1\" name=\"Alpha\"/><tableColumn id=\"2\" "
                    "name=\"Two_x000a_lines\"/><tableColumn id=\"3\" name=\"Total\"/>"));
  ASSERT_EQ(file_->model().tables.size(), 1u);
  const struct Table& table = file_->model().tables[0];
  EXPECT_EQ(table.name, "T");
  EXPECT_EQ(table.area, (Area{2, 2, 9, 4}));
  EXPECT_EQ(table.header_rows, 1);
  EXPECT_EQ(table.total_rows, 1);
  EXPECT_THAT(table.columns, ElementsAre("Alpha", "Two\nlines", "Total"));
  cells().SetConstant({2, 4}, Text("Sum"));
  file_->MatchTables();
  EXPECT_THAT(table.columns, ElementsAre("Alpha", "Two\nlines", "Sum"));
}

TEST_F(TableHeadersTest, AnInsertedColumnGetsItsHeader) {
  Open();
  file_->model().sheets[0]->row_styles[2] = 5;
  InsertColumn(4);
  EXPECT_THAT(file_->MatchTables().headers, ElementsAre(Pair(0, CellAddress{2, 4})));
  EXPECT_EQ(Header(4), "Column1");
  EXPECT_EQ(cells().Get({2, 4}).style, 5u) << "as a cell that comes into being there";
  EXPECT_THAT(file_->MatchTables().headers, IsEmpty()) << "they agree by now";
  EXPECT_THAT(SavedColumns(), HasSubstr("name=\"Two_x000a_lines\"/><tableColumn id=\"4\" "
                                        "name=\"Column1\"/><tableColumn id=\"3\""));
}

TEST_F(TableHeadersTest, AHeaderPutIntoAnInsertedColumnNamesIt) {
  Open();
  InsertColumn(3);
  cells().SetConstant({2, 3}, Text("FY <26> \"x\""));
  EXPECT_THAT(SavedColumns(), HasSubstr("name=\"FY &lt;26&gt; &quot;x&quot;\"/>"));
  EXPECT_EQ(Header(3), "FY <26> \"x\"");
}

TEST_F(TableHeadersTest, AChangedHeaderRenamesItsColumn) {
  struct {
    const char* what;
    CellValue value;
    const char* header;
    const char* name;
  } cases[] = {
      {"a number becomes a text", CellValue::Number(2026.5), "2026.5", "2026.5"},
      {"so does a Boolean", CellValue::Boolean(true), "TRUE", "TRUE"},
      {"and an error", CellValue::Error(CellError::kNotAvailable), "#N/A", "#N/A"},
      {"an emptied one is filled again", CellValue::Blank(), "Two\nlines", "Two_x000a_lines"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    Open();
    cells().SetConstant({2, 3}, one.value);
    EXPECT_THAT(file_->MatchTables().headers, ElementsAre(Pair(0, CellAddress{2, 3})));
    EXPECT_EQ(Header(3), one.header);
    EXPECT_THAT(SavedColumns(), HasSubstr("id=\"2\" name=\"" + std::string(one.name) + "\"/>"));
  }
}

TEST_F(TableHeadersTest, AHeaderThatOccursTwiceGetsANumber) {
  Open();
  cells().SetConstant({2, 3}, Text("ALPHA"));
  cells().SetConstant({2, 4}, Text("alpha"));
  EXPECT_THAT(file_->MatchTables().headers,
              ElementsAre(Pair(0, CellAddress{2, 3}), Pair(0, CellAddress{2, 4})));
  EXPECT_EQ(Header(2), "Alpha");
  EXPECT_EQ(Header(3), "ALPHA2");
  EXPECT_EQ(Header(4), "alpha3");
  EXPECT_THAT(SavedColumns(), HasSubstr("id=\"2\" name=\"ALPHA2\"/><tableColumn id=\"3\" "
                                        "name=\"alpha3\"/>"));
}

TEST_F(TableHeadersTest, AFormulaInAHeaderGivesWayToItsText) {
  Open();
  SheetModel& sheet = *file_->model().sheets[0];
  cells().SetFormula({2, 4},
                     sheet.formulas.Intern(ParseFormula("B3&\"\"", {2, 4}, file_->model())));
  cells().SetValue({2, 4}, Text("1"));
  EXPECT_THAT(file_->MatchTables().headers, ElementsAre(Pair(0, CellAddress{2, 4})));
  EXPECT_EQ(cells().Get({2, 4}).formula, 0u);
  EXPECT_EQ(Header(4), "1");
}

TEST_F(TableHeadersTest, WhatNoEditTouchedStaysByteForByte) {
  struct {
    const char* what;
    const char* rows;
    std::string table;
    int insertion;  // 0: none
  } cases[] = {
      {"nothing edited", kRows, kTable, 0},
      {"an insertion right of it", kRows, kTable, 5},
      {"headers that never agreed",
       "<sheetData><row r=\"2\"><c r=\"B2\"><v>5</v></c></row></sheetData>", kTable, 0},
      {"no header row", kRows,
       Table(
           "ref=\"B2:D3\" headerRowCount=\"0\"",
           "<tableColumn id=\"1\" "
           "name=\"Alpha\"/><tableColumn id=\"2\" name=\"b\"/><tableColumn id=\"3\" name=\"c\"/>"),
       0},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    Open(one.rows, one.table);
    if (one.insertion > 0) InsertColumn(one.insertion);
    cells().SetConstant({3, 3}, CellValue::Number(7));  // below the headers
    if (one.table != kTable) cells().SetConstant({2, 3}, CellValue::Number(8));
    EXPECT_THAT(file_->MatchTables().headers, IsEmpty());
    EXPECT_EQ(Saved(*file_, kTablePart), one.table);
  }
}

TEST_F(TableHeadersTest, FormulasFollowColumnsThatAreRenamed) {
  const std::string columns =
      "<tableColumn id=\"1\" name=\"Alpha\"/><tableColumn id=\"2\" name=\"Two_x000a_lines\"/>"
      "<tableColumn id=\"3\" name=\"Total\"><calculatedColumnFormula>T[[#This Row],[Alpha]]&gt;1"
      "</calculatedColumnFormula></tableColumn>";
  Open(
      "<sheetData><row r=\"2\"><c r=\"B2\" t=\"str\"><v>Alpha</v></c>"
      "<c r=\"C2\" t=\"str\"><v>Two&#10;lines</v></c><c r=\"D2\" t=\"str\"><v>Total</v></c></row>"
      "<row r=\"3\"><c r=\"B3\"><v>5</v></c><c r=\"D3\"><f>T[[#This "
      "Row],[Alpha]]&gt;1</f></c></row>"
      "<row r=\"9\"><c r=\"B9\"><f>SUM(T[alpha],B3)+ROWS(Other[Alpha])</f><v>1</v></c></row>"
      "</sheetData>",
      Table("ref=\"B2:D3\"", columns));
  file_->model().names.push_back({"first", -1, "T[[#Data],[Alpha]:[Total]]"});
  cells().SetConstant({2, 2}, Text("Be[ta"));
  const TableMatches matches = file_->MatchTables();
  EXPECT_THAT(matches.formulas,
              UnorderedElementsAre(Pair(0, Area{3, 4, 3, 4}), Pair(0, Area{9, 2, 9, 2})));
  EXPECT_TRUE(matches.names_changed);
  EXPECT_EQ(file_->model().names[0].refers_to, "T[[#Data],[Be'[ta]:[Total]]");
  EXPECT_THAT(Saved(*file_, kTablePart),
              HasSubstr("<calculatedColumnFormula>T[[#This Row],[Be'[ta]]"
                        "&gt;1</calculatedColumnFormula>"));
  const std::string sheet = Saved(*file_, "xl/worksheets/sheet1.xml");
  EXPECT_THAT(sheet, HasSubstr("<f>T[[#This Row],[Be'[ta]]&gt;1</f>"));
  EXPECT_THAT(sheet, HasSubstr("<f>SUM(T[Be'[ta],B3)+ROWS(Other[Alpha])</f>"));
  EXPECT_THAT(file_->MatchTables().formulas, IsEmpty()) << "they agree by now";
}

TEST_F(TableHeadersTest, AColumnThatAnUnreadableFormulaMayNameKeepsItsName) {
  Open(
      "<sheetData><row r=\"2\"><c r=\"B2\" t=\"str\"><v>Alpha</v></c>"
      "<c r=\"C2\" t=\"str\"><v>Two&#10;lines</v></c><c r=\"D2\" t=\"str\"><v>Total</v></c></row>"
      "<row r=\"9\"><c r=\"B9\"><f>SUM(T[[#New Part],[alpha]])</f><v>1</v></c></row></sheetData>");
  cells().SetConstant({2, 3}, Text("Free"));
  EXPECT_THAT(SavedColumns(), HasSubstr("Free"));
  cells().SetConstant({2, 2}, Text("Beta"));
  // However often it is tried.
  for (int i = 0; i < 2; ++i) {
    try {
      file_->MatchTables();
      FAIL() << "renamed";
    } catch (const FileError& error) {
      EXPECT_EQ(error.code(), FileError::Code::kUnsupported);
      EXPECT_THAT(error.what(), HasSubstr("\"Alpha\""));
    }
  }
}

}  // namespace
}  // namespace vantora::embedded
