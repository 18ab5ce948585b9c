#include <gmock/gmock.h>

#include <algorithm>

#include "formula/calculator.h"
#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class WorkbookReadTest : public PackageTest {
 protected:
  std::unique_ptr<WorkbookFile> OpenRows(const std::string& rows) const {
    return OpenParts(OneSheet("<sheetData>" + rows + "</sheetData>"));
  }
};

// A decimal comma, which the program's locale may have, as a point.
std::string WithPoint(std::string number) {
  std::replace(number.begin(), number.end(), ',', '.');
  return number;
}

// "1.5", "'text", "TRUE", "#N/A", "" (blank), "-" (absent); with "=formula" behind.
std::string Shown(const WorkbookModel& model, int sheet, CellAddress place) {
  const SheetModel& data = *model.sheets[sheet];
  Cell cell = data.cells.Get(place);
  std::string shown;
  switch (cell.value.kind) {
    case CellKind::kAbsent:
      return "-";
    case CellKind::kNumber:
      shown = WithPoint(std::to_string(cell.value.number));
      shown.erase(shown.find_last_not_of('0') + 1);
      break;
    case CellKind::kText:
      shown = "'" + model.strings[cell.value.text];
      break;
    case CellKind::kBoolean:
      shown = cell.value.boolean ? "TRUE" : "FALSE";
      break;
    case CellKind::kError:
      shown = "#" + std::to_string(static_cast<int>(cell.value.error));
      break;
    default:
      break;
  }
  if (cell.formula) shown += "=" + FormulaText(data.formulas[cell.formula], place, model);
  return shown;
}

TEST_F(WorkbookReadTest, ReadsEveryKindOfCell) {
  Parts parts = OneSheet(
      "<sheetData><row r=\"2\"><c r=\"A2\"><v>1.5E1</v></c><c t=\"n\"><v/></c><c r=\"D2\" "
      "s=\"7\"/><c t=\"s\"><v>1</v></c><c "
      "t=\"str\"><f>\"a\"&amp;\"&lt;\"</f><v>a&lt;_x000D_</v></c>"
      "</row><row><c t=\"b\"><v>1</v></c><c t=\"e\"><v>#N/A</v></c><c t=\"inlineStr\"><is><r><t>x"
      "</t></r><r><t xml:space=\"preserve\"> y</t></r><rPh><t>no</t></rPh></is></c><c t=\"d\"><v>"
      "2024-03-01T12:00:00</v></c><c t=\"d\"><v>1900-02-28</v></c><c t=\"str\"><f>A2</f></c>"
      "<c t=\"s\"/></row></sheetData>");
  AddSharedStrings(parts,
                   "<si/><si><r><t>ri</t></r><r><rPr><b/></rPr><t>ch</t></r><rPh><t>no</t>"
                   "</rPh></si><si><t>plain</t></si>");
  auto file = OpenParts(parts);
  const WorkbookModel& model = file->model();
  auto shown = [&](int row, int column) { return Shown(model, 0, {row, column}); };
  EXPECT_EQ(shown(2, 1), "15.");
  EXPECT_EQ(shown(2, 2), "");
  EXPECT_EQ(shown(2, 3), "-");
  EXPECT_EQ(shown(2, 4), "");
  EXPECT_EQ(model.sheets[0]->cells.Get({2, 4}).style, 7u);
  EXPECT_EQ(shown(2, 5), "'rich");
  EXPECT_EQ(shown(2, 6), "'a<\r=\"a\"&\"<\"");
  EXPECT_EQ(shown(3, 1), "TRUE");
  EXPECT_EQ(shown(3, 2), "#2042");
  EXPECT_EQ(shown(3, 3), "'x y");
  EXPECT_EQ(shown(3, 4), "45352.5");
  EXPECT_EQ(shown(3, 5), "59.");
  EXPECT_EQ(shown(3, 6), "=A2");
  EXPECT_EQ(shown(3, 7), "");
  EXPECT_EQ(model.sheets[0]->cells.Get({2, 1}).flags, 0);
  EXPECT_NE(file->model().strings.Intern("rich"), 1u) << "a rich text is not what a put enters";
  EXPECT_EQ(file->model().strings.Intern("plain"), 2u);
}

TEST_F(WorkbookReadTest, ReadsEveryKindOfFormula) {
  auto file = OpenRows(
      "<row><c r=\"A1\"><f t=\"shared\" si=\"1\"/><v>0</v></c><c r=\"B1\"><f t=\"shared\" si=\"0\" "
      "ref=\"B1:B2\">$A1*2</f><v>1</v></c><c r=\"C1\"><f t=\"array\" ref=\"C1:C2\">A1:A2*2</f><v>2"
      "</v></c><c r=\"D1\"><f t=\"dataTable\" ref=\"D1:D2\" dt2D=\"0\" dtr=\"0\" "
      "r1=\"A1\"/><v>3</v>"
      "</c></row><row><c r=\"A2\"><f t=\"shared\" si=\"1\" ref=\"A1:A2\">XFD2</f></c><c "
      "r=\"B2\"><f "
      "t=\"shared\" si=\"0\"/><v>4</v></c><c r=\"C2\"><v>5</v></c><c r=\"D2\"><v>6</v></c></row>"
      "<row><c r=\"A3\"><f t=\"shared\" si=\"0\" ref=\"A3:B3\">XFD9</f></c><c r=\"B3\"><f "
      "t=\"shared\" si=\"0\"/></c></row>");
  const WorkbookModel& model = file->model();
  auto shown = [&](int row, int column) { return Shown(model, 0, {row, column}); };
  EXPECT_EQ(shown(1, 1), "0.=XFD1") << "a member before its group's text";
  EXPECT_EQ(shown(1, 2), "1.=$A1*2");
  EXPECT_EQ(shown(2, 2), "4.=$A2*2");
  EXPECT_EQ(model.sheets[0]->cells.Get({1, 2}).formula, model.sheets[0]->cells.Get({2, 2}).formula);
  EXPECT_EQ(shown(1, 3), "2.=A1:A2*2");
  EXPECT_EQ(shown(2, 3), "5.");
  ASSERT_EQ(model.sheets[0]->arrays.size(), 1u);
  EXPECT_EQ(ToA1(model.sheets[0]->arrays[0].area), "C1:C2");
  EXPECT_EQ(shown(1, 4), "3.=TABLE(,A1)");
  EXPECT_NE(model.sheets[0]->cells.Get({2, 4}).formula, 0u) << "calculated by the table";
  EXPECT_EQ(shown(3, 2), "=A9") << "a member's reference goes round the sheet's end";
}

TEST_F(WorkbookReadTest, ReadsWhatStandsAroundTheCells) {
  auto file = OpenParts(OneSheet(
      "<sheetPr/><cols><col min=\"2\" max=\"3\" width=\"9.5\" style=\"4\" "
      "customWidth=\"1\"/></cols>"
      "<sheetData><row r=\"5\" s=\"6\" customFormat=\"1\"/><row r=\"7\" s=\"6\"/></sheetData>\n "
      "<sheetProtection sheet=\"1\"/><pageMargins left=\"1\"/>",
      "<definedNames><definedName name=\"a\">Data!$A$1</definedName><definedName name=\"b\" "
      "localSheetId=\"0\">\"x &amp; y\"</definedName></definedNames>"));
  const SheetModel& sheet = *file->model().sheets[0];
  ASSERT_EQ(sheet.column_formats.size(), 1u);
  EXPECT_EQ(sheet.column_formats[0].style, 4u);
  EXPECT_EQ(sheet.column_formats[0].attributes, " width=\"9.5\" customWidth=\"1\"");
  EXPECT_THAT(sheet.row_styles, ElementsAre(std::pair(5, 6u)));
  EXPECT_TRUE(sheet.is_protected);
  EXPECT_EQ(file->markup(0).Find("sheetProtection")->text, "\n <sheetProtection sheet=\"1\"/>");
  EXPECT_FALSE(file->markup(0).changed);
  ASSERT_EQ(file->model().names.size(), 2u);
  EXPECT_EQ(file->model().names[0].scope, -1);
  EXPECT_EQ(file->model().names[1].scope, 0);
  EXPECT_EQ(file->model().names[1].refers_to, "\"x & y\"");
}

TEST_F(WorkbookReadTest, ReadsPrefixedAndStrictParts) {
  Parts parts = OneSheet("");
  parts[kSheetPart] =
      "<x:worksheet xmlns:x=\"http://purl.oclc.org/ooxml/spreadsheetml/main\"><x:sheetData><x:row>"
      "<x:c><x:f>1+1</x:f><x:v>2</x:v></x:c></x:row></x:sheetData></x:worksheet>";
  std::string& rels = parts["xl/_rels/workbook.xml.rels"];
  std::size_t at = rels.find("http://schemas.openxmlformats.org/officeDocument/2006");
  rels.replace(at, 53, "http://purl.oclc.org/ooxml/officeDocument");
  auto file = OpenParts(parts);
  EXPECT_EQ(file->markup(0).prefix, "x:");
  EXPECT_EQ(Shown(file->model(), 0, {1, 1}), "2.=1+1");
  file->model().sheets[0]->cells.SetValue({2, 1}, CellValue::Number(1));
  EXPECT_THAT(Saved(*file, kSheetPart),
              HasSubstr("<x:row r=\"2\"><x:c r=\"A2\"><x:v>1</x:v></x:c></x:row></x:sheetData>"));
}

TEST_F(WorkbookReadTest, KeepsSheetsWithoutCells) {
  Parts parts = OneSheet("<sheetData/>");
  std::string& workbook = parts[kWorkbookPart];
  workbook.insert(workbook.find("<sheet "),
                  "<sheet name=\"Chart &amp; co\" sheetId=\"2\" state=\"veryHidden\" "
                  "r:id=\"rIdchartsheet\"/>");
  workbook.insert(workbook.find("<sheets>"),
                  "<workbookPr date1904=\"true\"/><bookViews><workbookView activeTab=\"1\"/>"
                  "</bookViews>");
  AddWorkbookPart(parts, "chartsheet", "chartsheets/sheet1.xml",
                  "<chartsheet xmlns=\"x\"><sheetViews><sheetView tabSelected=\"1\" "
                  "workbookViewId=\"0\"/></sheetViews></chartsheet>");
  auto file = OpenParts(parts);
  const WorkbookModel& model = file->model();
  ASSERT_EQ(model.sheets.size(), 2u);
  EXPECT_FALSE(model.sheets[0]->is_worksheet);
  EXPECT_EQ(model.sheets[0]->name, "Chart & co");
  EXPECT_EQ(model.sheets[0]->visibility, Visibility::kVeryHidden);
  EXPECT_TRUE(model.sheets[1]->is_worksheet);
  EXPECT_EQ(file->part_of(1), kSheetPart);
  EXPECT_TRUE(model.date_1904);
  EXPECT_EQ(file->active_sheet(), 1);
}

TEST_F(WorkbookReadTest, ReadsFillsLocksAndTextFormats) {
  Parts parts = OneSheet("<sheetData/>");
  AddWorkbookPart(
      parts, "theme", "theme/theme1.xml",
      "<a:theme xmlns:a=\"x\"><a:themeElements><a:clrScheme><a:dk1><a:sysClr "
      "val=\"windowText\" lastClr=\"000000\"/></a:dk1><a:lt1><a:srgbClr val=\"FFFFFF\"/>"
      "</a:lt1><a:accent1><a:srgbClr val=\"0000FF\"/></a:accent1></a:clrScheme>"
      "</a:themeElements></a:theme>");
  struct Expected {
    int fill_color_index;
    bool text_format;
    bool locked;
    const char* number_format = "";
    TextAlignment alignment = TextAlignment::kGeneral;
  };
  struct Case {
    const char* fill;
    const char* rest;  // attributes and children of the xf
    Expected expected;
  };
  const std::vector<Case> cases = {
      {"<patternFill patternType=\"none\"/>", "", {-4142, false, true}},
      {"<patternFill/>", "numFmtId=\"49\">", {-4142, true, true, "@"}},
      {"<patternFill patternType=\"solid\"><fgColor rgb=\"FFFFFF00\"/><bgColor indexed=\"10\"/>"
       "</patternFill>",
       "numFmtId=\"164\">",
       {6, true, true, "@"}},
      {"<patternFill patternType=\"solid\"><fgColor indexed=\"39\"/></patternFill>",
       "",
       {32, false, true}},
      {"<patternFill patternType=\"solid\"><fgColor indexed=\"2\"/></patternFill>",
       "numFmtId=\"10\"><alignment horizontal=\"right\"/><protection locked=\"0\"/>",
       {3, false, false, "0.00%", TextAlignment::kRight}},
      {"<patternFill patternType=\"solid\"><fgColor indexed=\"64\"/></patternFill>",
       "",
       {1, false, true}},
      {"<patternFill patternType=\"solid\"><fgColor theme=\"0\"/></patternFill>",
       "",
       {2, false, true}},
      {"<patternFill patternType=\"solid\"><fgColor theme=\"1\" tint=\"0.5\"/></patternFill>",
       "numFmtId=\"165\">",
       {16, false, true, "0@"}},
      {"<patternFill patternType=\"solid\"><fgColor theme=\"4\" tint=\"-0.5\"/></patternFill>",
       "",
       {11, false, true}},
      {"<patternFill patternType=\"gray125\"><fgColor rgb=\"FFFF0000\"/></patternFill>",
       "",
       {2, false, true}},
      {"<patternFill patternType=\"lightUp\"><bgColor rgb=\"FF00FF00\"/></patternFill>",
       "",
       {4, false, true}},
      {"<gradientFill><stop position=\"0\"><color rgb=\"FFFF0000\"/></stop></gradientFill>",
       "",
       {3, false, true}},
  };
  std::string fills, xfs;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    fills += std::string("<fill>") + cases[i].fill + "</fill>";
    std::string rest = *cases[i].rest ? cases[i].rest : ">";
    xfs += "<xf fillId=\"" + std::to_string(i) + "\" " + rest + "</xf>";
  }
  AddWorkbookPart(parts, "styles", "styles.xml",
                  "<styleSheet><numFmts><numFmt numFmtId=\"164\" formatCode=\"@\"/><numFmt "
                  "numFmtId=\"165\" formatCode=\"0@\"/></numFmts><fills>" +
                      fills + "</fills><cellXfs>" + xfs + "</cellXfs></styleSheet>");
  auto file = OpenParts(parts);
  const Styles& styles = file->model().styles;
  ASSERT_EQ(styles.formats.size(), cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const CellFormat& format = styles.formats[i];
    EXPECT_EQ(format.fill_color_index, cases[i].expected.fill_color_index) << cases[i].fill;
    EXPECT_EQ(format.number_format, cases[i].expected.number_format) << cases[i].fill;
    EXPECT_EQ(format.alignment, cases[i].expected.alignment) << cases[i].fill;
    EXPECT_EQ(format.text_format, cases[i].expected.text_format) << cases[i].rest;
    EXPECT_EQ(format.locked, cases[i].expected.locked) << cases[i].rest;
  }
}

TEST_F(WorkbookReadTest, AWorkbooksOwnPaletteCounts) {
  Parts parts = OneSheet("<sheetData/>");
  std::string colors;
  for (int i = 0; i < 64; ++i) colors += "<rgbColor rgb=\"00" + std::to_string(100000 + i) + "\"/>";
  AddWorkbookPart(parts, "styles", "styles.xml",
                  "<styleSheet><fills><fill><patternFill patternType=\"solid\"><fgColor "
                  "rgb=\"FF100020\"/></patternFill></fill></fills><cellXfs><xf fillId=\"0\"/>"
                  "</cellXfs><colors><indexedColors>" +
                      colors + "</indexedColors></colors></styleSheet>");
  auto file = OpenParts(parts);
  EXPECT_EQ(file->model().styles.palette[0], 0x100008u);
  EXPECT_EQ(file->model().styles.formats[0].fill_color_index, 13);
}

// A library that writes formulas without their values leaves it to others to calculate.
TEST_F(WorkbookReadTest, FormulasWithoutAValueAreCalculatedWhenSomebodyLooks) {
  struct {
    const char* what;
    CellAddress edited;
    double value;
    double b, c, d;
  } cases[] = {
      {"nothing edited", {0, 0}, 0, 6, 12, 13},
      {"what they depend on edited", {1, 1}, 5, 10, 20, 21},
      {"an edit of something else", {9, 9}, 5, 6, 12, 13},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    auto file = OpenRows(
        "<row r=\"1\"><c r=\"A1\"><v>3</v></c>"
        "<c r=\"B1\"><f t=\"shared\" ref=\"B1:C1\" si=\"0\">A1*2</f></c>"
        "<c r=\"C1\"><f t=\"shared\" si=\"0\"/><v></v></c><c "
        "r=\"D1\"><f>C1+1</f><v>99</v></c></row>");
    SheetModel& sheet = *file->model().sheets[0];
    Calculator calculator(file->model());
    if (one.edited.row > 0) {
      sheet.cells.SetConstant(one.edited, CellValue::Number(one.value));
      calculator.Changed(0, {one.edited.row, one.edited.column, one.edited.row, one.edited.column});
      calculator.CalculateAll();
    }
    EXPECT_TRUE(calculator.EnsureCalculated(0, CellAddress{1, 3}));
    EXPECT_TRUE(calculator.EnsureCalculated(0, CellAddress{1, 4}));
    EXPECT_EQ(sheet.cells.Get({1, 2}).value.number, one.b);
    EXPECT_EQ(sheet.cells.Get({1, 3}).value.number, one.c);
    EXPECT_EQ(sheet.cells.Get({1, 4}).value.number, one.d);
  }
  const std::string rows = "<row r=\"1\"><c r=\"A1\"><f>1+1</f></c></row>";
  auto file = OpenRows(rows);
  Calculator(file->model()).CalculateAll();
  EXPECT_EQ(SheetData(Saved(*file, kSheetPart)), rows) << "nobody looked";
}

}  // namespace
}  // namespace vantora::embedded
