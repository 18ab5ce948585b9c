#include <gmock/gmock.h>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr char kStrings[] = "xl/sharedStrings.xml";

class WorkbookSaveTest : public PackageTest {
 protected:
  static CellStore& Cells(WorkbookFile& file) { return file.model().sheets[0]->cells; }
  static void SetFormula(WorkbookFile& file, CellAddress place, std::string_view text) {
    SheetModel& sheet = *file.model().sheets[0];
    sheet.cells.SetFormula(place, sheet.formulas.Intern(ParseFormula(text, place, file.model())));
  }
  static void SetText(WorkbookFile& file, CellAddress place, std::string_view text) {
    Cells(file).SetConstant(place, CellValue::Text(file.model().strings.Intern(text)));
  }
  // Makes a sheet the active one of the only window.
  static void Activate(WorkbookFile& file, int sheet) {
    file.WriteWindows(
        {{.origin = 0, .view = file.windows()[0], .active_sheet = sheet, .sheets = {}}});
  }
  // Selects cells of the only sheet.
  static void Select(WorkbookFile& file, const Area& area) {
    SheetView view = ReadSheetView(file.markup(0), 0);
    view.selection = {area};
    view.active_cell = {area.first_row, area.first_column};
    file.WriteWindows({{.origin = 0, .view = file.windows()[0], .sheets = {{0, view}}}});
  }
  // <sheetData> of these rows after `edit` and a save.
  template <typename Edit>
  std::string Edited(const std::string& rows, Edit&& edit) const {
    auto file = OpenParts(OneSheet("<sheetData>" + rows + "</sheetData>"));
    edit(*file);
    return SheetData(Saved(*file, kSheetPart));
  }
  // Inserts columns as the calculator does, for formulas that no insertion crosses.
  static void InsertColumns(WorkbookFile& file, int column, int count) {
    Cells(file).InsertColumns(column, count);
    file.AddInsertion({0, column, count});
  }
};

void ExpectSameParts(const std::filesystem::path& a, const std::filesystem::path& b) {
  auto first = OpcPackage::Open(a);
  auto second = OpcPackage::Open(b);
  EXPECT_EQ(first->PartNames(), second->PartNames());
  for (const std::string& part : first->PartNames()) {
    EXPECT_EQ(first->Read(part), second->Read(part)) << a << " " << part;
  }
}

TEST_F(WorkbookSaveTest, AnUnchangedModelKeepsEveryByte) {
  auto workbooks = ModelWorkbooks();
  if (workbooks.empty()) GTEST_SKIP() << "There are no model workbooks beside the checkout.";
  for (const auto& path : workbooks) {
    WorkbookFile::Open(path)->Save(Path("copy.xlsm"));
    ExpectSameParts(path, Path("copy.xlsm"));
  }
}

TEST_F(WorkbookSaveTest, AnEditOfAModelChangesOnlyItsCell) {
  auto workbooks = ModelWorkbooks();
  if (workbooks.empty()) GTEST_SKIP() << "There are no model workbooks beside the checkout.";
  for (const auto& path : workbooks) {
    SCOPED_TRACE(path);
    auto file = WorkbookFile::Open(path);
    // The last number without a formula.
    std::optional<std::pair<int, CellAddress>> edited;
    for (const auto& sheet : file->model().sheets) {
      for (int column = 1; column <= sheet->cells.LastColumn(); ++column) {
        sheet->cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
          if (cell.value.kind != CellKind::kNumber || cell.formula) return;
          edited = {sheet->id, {row, column}};
        });
      }
    }
    if (!edited) continue;
    auto [sheet, place] = *edited;
    file->model().sheets[sheet]->cells.SetConstant(place, CellValue::Number(0.1));
    file->Save(Path("edited.xlsm"));
    auto before = OpcPackage::Open(path);
    auto after = OpcPackage::Open(Path("edited.xlsm"));
    EXPECT_EQ(before->PartNames(), after->PartNames());
    for (const std::string& part : before->PartNames()) {
      if (part == file->part_of(sheet)) {
        auto elements = SheetElements(after->Read(part));
        EXPECT_THAT(Differences(SheetElements(before->Read(part)), elements),
                    UnorderedElementsAre("c" + ToA1(place)));
        EXPECT_THAT(elements["c" + ToA1(place)], HasSubstr("<v>0.1</v>"));
      } else if (part.find("/charts/") == std::string::npos) {
        EXPECT_EQ(before->Read(part), after->Read(part)) << part;
      }
    }
  }
}

// Each edited cell as it stood, the edit, and as it is written.
TEST_F(WorkbookSaveTest, PatchesOfACellWhatChanged) {
  using Edit = void (*)(WorkbookFile&);
  struct Case {
    const char* before;
    Edit edit;
    const char* after;
  };
  const std::vector<Case> cases = {
      {"<c r=\"A1\" s=\"3\"/>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Number(1e-7));
       },
       "<c r=\"A1\" s=\"3\"><v>1e-07</v></c>"},
      {"<c r='A1' x:y='z' t='e'><v>#N/A</v><extLst><ext/></extLst></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Boolean(true));
       },
       "<c r='A1' x:y='z' t='b'><v>1</v><extLst><ext/></extLst></c>"},
      {"<c r=\"A1\" t=\"b\" s=\"1\"><v>1</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Number(-2));
       },
       "<c r=\"A1\" s=\"1\"><v>-2</v></c>"},
      {"<c r=\"A1\" s=\"1\" t=\"str\"><f ca=\"1\">B1</f><v>a</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Text(f.model().strings.Intern(" <b> ")));
       },
       "<c r=\"A1\" s=\"1\" t=\"str\"><f ca=\"1\">B1</f><v xml:space=\"preserve\"> &lt;b&gt; </v>"
       "</c>"},
      {"<c r=\"A1\" vm=\"2\" t=\"e\"><f>B1</f><v>#VALUE!</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Error(CellError::kDiv0));
       },
       "<c r=\"A1\" t=\"e\"><f>B1</f><v>#DIV/0!</v></c>"},
      {"<c r=\"A1\"><f>B1</f></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Number(5));
       },
       "<c r=\"A1\"><f>B1</f><v>5</v></c>"},
      {"<c r=\"A1\"><f>B1</f><v>5</v></c>",
       [](WorkbookFile& f) {
         SetFormula(f, {1, 1}, "IF(B1<2,\"&\",B1)");
       },
       "<c r=\"A1\"><f>IF(B1&lt;2,\"&amp;\",B1)</f><v>5</v></c>"},
      {"<c r=\"A1\"><f>B1</f><v>5</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetConstant({1, 1}, CellValue::Number(5));
       },
       "<c r=\"A1\"><v>5</v></c>"},
      {"<c r=\"A1\"><v>5</v></c>",
       [](WorkbookFile& f) {
         SetFormula(f, {1, 1}, "B1");
       },
       "<c r=\"A1\"><f>B1</f><v>5</v></c>"},
      {"<c r=\"A1\" t=\"inlineStr\"><is><t>x</t></is></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Number(5));
       },
       "<c r=\"A1\"><v>5</v></c>"},
      {"<c r=\"A1\" t=\"inlineStr\"><is><t>x</t></is></c>",
       [](WorkbookFile& f) {
         SetFormula(f, {1, 1}, "B1");
       },
       "<c r=\"A1\" t=\"str\"><f>B1</f><v>x</v></c>"},
      {"<c r=\"A1\"><v>5</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetStyle({1, 1}, 4);
       },
       "<c r=\"A1\" s=\"4\"><v>5</v></c>"},
      {"<c r=\"A1\" s=\"4\"><v>5</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetConstant({1, 1}, CellValue::Blank());
       },
       "<c r=\"A1\" s=\"4\"></c>"},
      {"<c r=\"A1\" cm=\"1\"><f t=\"array\" ref=\"A1\">B1</f><v>5</v></c>",
       [](WorkbookFile& f) {
         f.model().sheets[0]->arrays.clear();
         SetFormula(f, {1, 1}, "B2");
       },
       "<c r=\"A1\"><f>B2</f><v>5</v></c>"},
      {"<c r=\"A1\" cm=\"1\"><f t=\"array\" ref=\"A1:A2\">B1</f><v>5</v></c>",
       [](WorkbookFile& f) {
         SetFormula(f, {1, 1}, "B2");
       },
       "<c r=\"A1\" cm=\"1\"><f t=\"array\" ref=\"A1:A2\">B2</f><v>5</v></c>"},
      {"<c><v>5</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetValue({1, 1}, CellValue::Number(6));
       },
       "<c r=\"A1\"><v>6</v></c>"},
      {"<c r=\"A1\"><v>5</v></c>",
       [](WorkbookFile& f) {
         Cells(f).Erase({1, 1});
       },
       ""},
      {"<c r=\"A1\"><v>5</v></c>",
       [](WorkbookFile& f) {
         Cells(f).SetConstant({1, 1}, CellValue::Blank());
       },
       ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Edited(std::string("<row r=\"1\" spans=\"1:2\" z=\"1\">") + c.before +
                         "<c r=\"B1\"><v>0007.0</v></c></row>",
                     c.edit),
              std::string("<row r=\"1\" spans=\"1:2\" z=\"1\">") + c.after +
                  "<c r=\"B1\"><v>0007.0</v></c></row>")
        << c.before;
  }
}

TEST_F(WorkbookSaveTest, PutsNewCellsAndRowsInOrder) {
  EXPECT_EQ(
      Edited("<row r=\"2\" spans=\"2:3\" ht=\"20\"><c r=\"B2\"><v>1</v></c> <c r=\"D2\"/></row>"
             "<row r=\"4\"/>",
             [](WorkbookFile& file) {
               Cells(file).SetValue({1, 3}, CellValue::Number(13));
               Cells(file).SetValue({2, 1}, CellValue::Number(21));
               Cells(file).SetValue({2, 3}, CellValue::Number(23));
               Cells(file).SetStyle({2, 5}, 2);
               Cells(file).SetValue({4, 1}, CellValue::Number(41));
               Cells(file).SetValue({200, 2}, CellValue::Blank());
               SetFormula(file, {300, 28}, "A1");
             }),
      "<row r=\"1\"><c r=\"C1\"><v>13</v></c></row><row r=\"2\" ht=\"20\"><c r=\"A2\"><v>21</v>"
      "</c><c r=\"B2\"><v>1</v></c> <c r=\"C2\"><v>23</v></c><c r=\"D2\"/><c r=\"E2\" s=\"2\"/>"
      "</row><row r=\"4\"><c r=\"A4\"><v>41</v></c></row><row r=\"300\"><c r=\"AB300\"><f>A1</f>"
      "</c></row>");
}

TEST_F(WorkbookSaveTest, ABlankCellCountsWhereItsColumnHasAFormat) {
  auto file = OpenParts(
      OneSheet("<cols><col min=\"2\" max=\"2\" width=\"9\" style=\"3\"/></cols><sheetData/>"));
  Cells(*file).SetStyle({1, 1}, 0);
  Cells(*file).SetStyle({1, 2}, 0);
  EXPECT_EQ(SheetData(Saved(*file, kSheetPart)), "<row r=\"1\"><c r=\"B1\"/></row>");
}

TEST_F(WorkbookSaveTest, SharedFormulasStayAsLongAsTheirTextDoes) {
  const std::string rows =
      "<row r=\"1\"><c r=\"A1\"><f t=\"shared\" ref=\"A1:C1\" si=\"0\">A9+1</f><v>1</v></c><c "
      "r=\"B1\"><f t=\"shared\" si=\"0\"/><v>2</v></c><c r=\"C1\"><f t=\"shared\" "
      "si=\"0\"/><v>3</v>"
      "</c></row>";
  EXPECT_EQ(
      Edited(rows,
             [](WorkbookFile& file) {
               SetFormula(file, {1, 2}, "7");
               Cells(file).SetValue({1, 3}, CellValue::Number(30));
             }),
      "<row r=\"1\"><c r=\"A1\"><f t=\"shared\" ref=\"A1:C1\" si=\"0\">A9+1</f><v>1</v></c><c "
      "r=\"B1\"><f>7</f><v>2</v></c><c r=\"C1\"><f t=\"shared\" si=\"0\"/><v>30</v></c></row>")
      << "members leave the group";
  EXPECT_EQ(Edited(rows,
                   [](WorkbookFile& file) {
                     SetFormula(file, {1, 1}, "7");
                   }),
            "<row r=\"1\"><c r=\"A1\"><f>7</f><v>1</v></c><c r=\"B1\"><f>B9+1</f><v>2</v></c><c "
            "r=\"C1\"><f>C9+1</f><v>3</v></c></row>")
      << "the text goes";
  EXPECT_EQ(Edited(rows,
                   [](WorkbookFile& file) {
                     Cells(file).Erase({1, 1});
                   }),
            "<row r=\"1\"><c r=\"B1\"><f>B9+1</f><v>2</v></c><c r=\"C1\"><f>C9+1</f><v>3</v></c>"
            "</row>");
  EXPECT_EQ(
      Edited(rows, [](WorkbookFile& file) { InsertColumns(file, 1, 2); }),
      "<row r=\"1\"><c r=\"C1\"><f t=\"shared\" ref=\"C1:E1\" si=\"0\">C9+1</f><v>1</v></c><c "
      "r=\"D1\"><f t=\"shared\" si=\"0\"/><v>2</v></c><c r=\"E1\"><f t=\"shared\" si=\"0\"/><v>3"
      "</v></c></row>")
      << "the whole group moves";
  EXPECT_EQ(
      Edited(rows, [](WorkbookFile& file) { InsertColumns(file, 2, 1); }),
      "<row r=\"1\"><c r=\"A1\"><f t=\"shared\" ref=\"A1:C1\" si=\"0\">A9+1</f><v>1</v></c><c "
      "r=\"C1\"><f>C9+1</f><v>2</v></c><c r=\"D1\"><f>D9+1</f><v>3</v></c></row>")
      << "the group is split";
}

TEST_F(WorkbookSaveTest, InsertedColumnsMoveCellsAndTheirFormulas) {
  EXPECT_EQ(
      Edited("<row r=\"1\" spans=\"1:4\"><c r=\"A1\"><f>SUM(A5:A6)</f></c><c r=\"B1\" "
             "s=\"2\"><f>B5+$A$1"
             "</f><v>1</v></c><c><f t=\"array\" ref=\"C1:C2\">C5:C6</f></c><c r=\"D1\"><f "
             "t=\"dataTable\" ref=\"D1:D2\" dtr=\"1\" r1=\"B1\"/><v>4</v></c></row><row r=\"2\"><c "
             "r=\"D2\"><v>5</v></c></row>",
             [](WorkbookFile& file) {
               InsertColumns(file, 2, 1);
               Cells(file).SetValue({2, 2}, CellValue::Number(22));
               for (ArrayFormula& array : file.model().sheets[0]->arrays) {
                 ++array.area.first_column;
                 ++array.area.last_column;
               }
             }),
      "<row r=\"1\"><c r=\"A1\"><f>SUM(A5:A6)</f></c><c r=\"C1\" "
      "s=\"2\"><f>C5+$A$1</f><v>1</v></c><c "
      "r=\"D1\"><f t=\"array\" ref=\"D1:D2\">D5:D6</f></c><c r=\"E1\"><f t=\"dataTable\" "
      "ref=\"E1:E2\" dtr=\"1\" r1=\"C1\"/><v>4</v></c></row><row r=\"2\"><c "
      "r=\"B2\"><v>22</v></c><c "
      "r=\"E2\"><v>5</v></c></row>");
}

TEST_F(WorkbookSaveTest, EachInsertionIsFollowedOnce) {
  auto file =
      OpenParts(OneSheet("<sheetData/><mergeCells><mergeCell ref=\"B1:C1\"/></mergeCells>"));
  InsertColumns(*file, 1, 1);
  file->FollowInsertions(0);
  file->FollowInsertions(0);
  EXPECT_THAT(file->markup(0).Find("mergeCells")->text, HasSubstr("ref=\"C1:D1\""));
  InsertColumns(*file, 1, 1);
  Select(*file, {7, 7, 7, 7});
  std::string saved = Saved(*file, kSheetPart);
  EXPECT_THAT(saved, HasSubstr("ref=\"D1:E1\""));
  EXPECT_THAT(saved, HasSubstr("sqref=\"G7\"")) << "selected where things stand now";
  EXPECT_EQ(Saved(*file, kSheetPart), saved);
}

// Some parts may have followed the insertion when another one turns out to be damaged.
TEST_F(WorkbookSaveTest, AfterAPartThatCouldNotFollowNoSaveSucceeds) {
  Parts parts = OneSheet("<sheetData/>");
  parts["xl/worksheets/_rels/sheet1.xml.rels"] =
      "<Relationships><Relationship Id=\"rId1\" Type=\"x/comments\" Target=\"../comments1.xml\"/>"
      "</Relationships>";
  parts["xl/comments1.xml"] = "<comments><commentList>";
  auto file = OpenParts(parts);
  InsertColumns(*file, 1, 1);
  for (int attempt = 0; attempt < 2; ++attempt) {
    try {
      file->Save(Path("saved.xlsx"));
      ADD_FAILURE() << "saved at attempt " << attempt;
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), HasSubstr("xl/comments1.xml"));
    }
    EXPECT_FALSE(std::filesystem::exists(Path("saved.xlsx")));
  }
}

TEST_F(WorkbookSaveTest, TextsComeBackTheSame) {
  Parts parts = OneSheet("<sheetData/>");
  AddSharedStrings(parts, "<si><t>old</t></si>");
  const std::vector<std::string> texts = {"old",     " blanks ", "\U0001F600", "a\r\nb\x01",
                                          "_x0041_", "<&>\"'",   "old",        std::string("\t")};
  auto file = OpenParts(parts);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    SetText(*file, {static_cast<int>(i) + 1, 1}, texts[i]);
  }
  std::string strings = Saved(*file, kStrings);
  EXPECT_THAT(strings, HasSubstr("<si><t>old</t></si><si><t xml:space=\"preserve\"> blanks </t>"));
  EXPECT_THAT(strings, HasSubstr("<t>a_x000D_\nb_x0001_</t>"));
  auto again = WorkbookFile::Open(Path("saved.xlsx"));
  EXPECT_EQ(again->model().strings.shared_count(), 7u) << "each text once";
  for (std::size_t i = 0; i < texts.size(); ++i) {
    Cell cell = Cells(*again).Get({static_cast<int>(i) + 1, 1});
    ASSERT_EQ(cell.value.kind, CellKind::kText);
    EXPECT_EQ(again->model().strings[cell.value.text], texts[i]);
  }
}

TEST_F(WorkbookSaveTest, SharedStringCountsFollow) {
  Parts parts = OneSheet("<sheetData><row><c t=\"s\"><v>0</v></c></row></sheetData>");
  AddWorkbookPart(parts, "sharedStrings", "sharedStrings.xml",
                  "<sst count=\"1\" uniqueCount=\"1\"><si><t>a</t></si><extLst/></sst>");
  auto file = OpenParts(parts);
  SetText(*file, {2, 1}, "b");
  SetText(*file, {3, 1}, "b");
  EXPECT_EQ(Saved(*file, kStrings),
            "<sst count=\"3\" uniqueCount=\"2\"><si><t>a</t></si><si><t>b</t></si><extLst/></sst>");
}

TEST_F(WorkbookSaveTest, SavingAgainTellsOfAllEdits) {
  Parts parts = OneSheet(
      "<dimension ref=\"A1\"/><sheetData><row r=\"1\"><c r=\"A1\"><v>1</v></c></row></sheetData>");
  auto file = OpenParts(parts);
  SetText(*file, {2, 1}, "first");
  file->Save(Path("one.xlsx"));
  SetText(*file, {3, 1}, "second");
  InsertColumns(*file, 1, 1);
  file->Save(Path("two.xlsx"));
  SetText(*file, {4, 3}, "third");
  std::string sheet = Saved(*file, kSheetPart);
  EXPECT_EQ(
      SheetData(sheet),
      "<row r=\"1\"><c r=\"B1\"><v>1</v></c></row><row r=\"2\"><c r=\"B2\" t=\"s\"><v>0</v></c>"
      "</row><row r=\"3\"><c r=\"B3\" t=\"s\"><v>1</v></c></row><row r=\"4\"><c r=\"C4\" t=\"s\">"
      "<v>2</v></c></row>");
  EXPECT_THAT(sheet, HasSubstr("<dimension ref=\"B1:C4\"/>"));
  auto again = WorkbookFile::Open(Path("saved.xlsx"));
  EXPECT_EQ(again->model().strings.shared_count(), 3u);
}

TEST_F(WorkbookSaveTest, ColumnFormatsAreWrittenWhenTheyChanged) {
  Parts parts = OneSheet("<cols><col min=\"1\" max=\"2\" width=\"5\"/></cols><sheetData/>");
  auto file = OpenParts(parts);
  SheetModel& sheet = *file->model().sheets[0];
  sheet.column_formats = {{1, 1, 0, " width=\"5\""}, {3, 3, 7, ""}};
  EXPECT_EQ(Saved(*file, kSheetPart), parts[kSheetPart]);
  sheet.column_formats_changed = true;
  EXPECT_THAT(Saved(*file, kSheetPart),
              HasSubstr("<cols><col min=\"1\" max=\"1\" width=\"5\"/><col min=\"3\" max=\"3\" "
                        "width=\"9.140625\" style=\"7\"/></cols><sheetData"));
}

TEST_F(WorkbookSaveTest, NamesArePatchedOneByOne) {
  const std::string names =
      "<definedNames><definedName name=\"a\" hidden=\"1\">Data!$A$1</definedName><definedName "
      "name=\"a\" localSheetId=\"0\">Data!$B$1</definedName><definedName name=\"c\">1</definedName>"
      "</definedNames>";
  Parts parts = OneSheet("<sheetData/>", names);
  auto file = OpenParts(parts);
  file->model().names[1].refers_to = "'A & B'!$C$1";
  file->model().names.erase(file->model().names.begin() + 2);
  file->model().names.push_back({"d", 0, "2"});
  file->model().ForgetNames();
  EXPECT_THAT(
      Saved(*file, kWorkbookPart),
      HasSubstr("<definedNames><definedName name=\"a\" hidden=\"1\">Data!$A$1</definedName>"
                "<definedName name=\"a\" localSheetId=\"0\">'A &amp; B'!$C$1</definedName>"
                "<definedName name=\"d\" localSheetId=\"0\">2</definedName></definedNames>"));
  file->model().names.clear();
  EXPECT_EQ(Saved(*file, kWorkbookPart), OneSheet("")[kWorkbookPart]);
  file->model().names.push_back({"e", -1, "3"});
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("</sheets><definedNames><definedName name=\"e\">3</definedName>"
                        "</definedNames></workbook>"));
}

TEST_F(WorkbookSaveTest, TheCalculationChainGoesWhenFormulasComeGoOrMove) {
  using Edit = void (*)(WorkbookFile&);
  struct Case {
    Edit edit;
    bool stays;
  };
  for (const Case& c : {
           Case{[](WorkbookFile& f) {
                  Cells(f).SetValue({1, 1}, CellValue::Number(9));
                },
                true},
           Case{[](WorkbookFile& f) {
                  SetFormula(f, {1, 1}, "B1+1");
                },
                true},
           Case{[](WorkbookFile& f) {
                  SetFormula(f, {2, 1}, "B1");
                },
                false},
           Case{[](WorkbookFile& f) {
                  Cells(f).SetConstant({1, 1}, CellValue::Number(9));
                },
                false},
           Case{[](WorkbookFile& f) {
                  Cells(f).Erase({1, 1});
                },
                false},
           Case{[](WorkbookFile& f) { InsertColumns(f, 1, 1); }, false},
           Case{[](WorkbookFile& f) { InsertColumns(f, 2, 1); }, true},
       }) {
    Parts parts =
        OneSheet("<sheetData><row><c r=\"A1\"><f>B9</f></c><c r=\"B1\"/></row></sheetData>");
    AddWorkbookPart(parts, "calcChain", "calcChain.xml",
                    "<calcChain><c r=\"A1\" i=\"1\"/></calcChain>");
    std::string& types = parts["[Content_Types].xml"];
    types.insert(types.find("</Types>"),
                 "<Override PartName=\"/xl/calcChain.xml\" ContentType=\"x/chain\"/>");
    auto file = OpenParts(parts);
    c.edit(*file);
    EXPECT_EQ(!Saved(*file, "xl/calcChain.xml").empty(), c.stays);
    for (const char* part : {"[Content_Types].xml", "xl/_rels/workbook.xml.rels"}) {
      std::string text = OpcPackage::Open(Path("saved.xlsx"))->Read(part);
      EXPECT_EQ(text.find("calcChain") != std::string::npos, c.stays) << part;
    }
  }
}

TEST_F(WorkbookSaveTest, AsksForACalculationOnOpening) {
  auto file = OpenParts(OneSheet("<sheetData/>"));
  file->RequestCalculationOnOpening();
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("</sheets><calcPr fullCalcOnLoad=\"1\"/></work"));
  constexpr char kIterating[] =
      "<calcPr calcId=\"1\" iterate=\"1\" iterateCount=\"7\" iterateDelta=\"1E-4\"/>";
  file = OpenParts(OneSheet("<sheetData/>", kIterating));
  EXPECT_TRUE(file->model().iteration.enabled);
  EXPECT_EQ(file->model().iteration.most_rounds, 7);
  EXPECT_EQ(file->model().iteration.largest_change, 1e-4);
  file->RequestCalculationOnOpening();
  EXPECT_THAT(Saved(*file, "xl/workbook.xml"), HasSubstr("iterateDelta=\"1E-4\" fullCalcOnLoad"));
  file = OpenParts(OneSheet("<sheetData/>", "<calcPr calcId=\"1\"/>"));
  EXPECT_FALSE(file->model().iteration.enabled);
  file->RequestCalculationOnOpening();
  EXPECT_THAT(Saved(*file, kWorkbookPart),
              HasSubstr("<calcPr calcId=\"1\" fullCalcOnLoad=\"1\"/>"));
}

TEST_F(WorkbookSaveTest, SelectionsGoIntoTheActivePane) {
  struct Case {
    const char* before;
    const char* after;
  };
  for (const Case& c : {
           Case{"",
                "<sheetViews><sheetView workbookViewId=\"0\"><selection activeCell=\"B2\" "
                "sqref=\"B2:C3\"/></sheetView></sheetViews>"},
           Case{
               "<sheetViews><sheetView zoomScale=\"80\"><selection activeCell=\"A5\" sqref=\"A5\"/>"
               "<pivotSelection/></sheetView></sheetViews>",
               "<sheetViews><sheetView zoomScale=\"80\"><selection activeCell=\"B2\" "
               "sqref=\"B2:C3\"/><pivotSelection/></sheetView></sheetViews>"},
           Case{"<sheetViews><sheetView><pane xSplit=\"1\" activePane=\"topRight\"/><selection "
                "pane=\"topRight\"/><extLst/></sheetView></sheetViews>",
                "<sheetViews><sheetView><pane xSplit=\"1\" activePane=\"topRight\"/><selection "
                "pane=\"topRight\" activeCell=\"B2\" sqref=\"B2:C3\"/><extLst/></sheetView>"
                "</sheetViews>"},
       }) {
    auto file = OpenParts(OneSheet(std::string(c.before) + "<sheetData/>"));
    Select(*file, {2, 2, 3, 3});
    std::string saved = Saved(*file, kSheetPart);
    EXPECT_THAT(saved, HasSubstr(std::string(c.after) + "<sheetData/>"));
    EXPECT_EQ(OneSheet(std::string(c.after) + "<sheetData/>")[kSheetPart], saved);
  }
  auto file = OpenParts(OneSheet("<sheetData/>"));
  Select(*file, {1, 1, 1, 1});
  EXPECT_EQ(Saved(*file, kSheetPart), OneSheet("<sheetData/>")[kSheetPart]) << "as it is anyway";
}

TEST_F(WorkbookSaveTest, TheActiveTabIsWrittenWhenItDiffers) {
  auto created = WorkbookFile::Create({"One", "Two"});
  Activate(*created, 1);
  created->Save(Path("two.xlsx"));
  auto file = WorkbookFile::Open(Path("two.xlsx"));
  EXPECT_EQ(file->active_sheet(), 1);
  EXPECT_THAT(file->markup(1).Find("sheetViews")->text, HasSubstr("tabSelected=\"1\""));
  EXPECT_EQ(file->markup(0).Find("sheetViews"), nullptr);
  Activate(*file, 1);
  file->Save(Path("same.xlsx"));
  ExpectSameParts(Path("two.xlsx"), Path("same.xlsx"));
  Activate(*file, 0);
  file->Save(Path("one.xlsx"));
  file = WorkbookFile::Open(Path("one.xlsx"));
  EXPECT_EQ(file->active_sheet(), 0);
  EXPECT_THAT(file->markup(0).Find("sheetViews")->text, HasSubstr("tabSelected=\"1\""));
  EXPECT_THAT(file->markup(1).Find("sheetViews")->text, HasSubstr("tabSelected=\"0\""));
}

TEST_F(WorkbookSaveTest, AWorkbookWithoutViewsGetsOneForItsActiveTab) {
  Parts parts = OneSheet("<sheetData/>");
  AddWorkbookPart(parts, "worksheet", "worksheets/sheet2.xml", parts[kSheetPart]);
  std::string& workbook = parts[kWorkbookPart];
  const std::size_t sheets = workbook.find("<sheets>");
  workbook.insert(workbook.find("</sheets>"),
                  "<sheet name=\"Other\" sheetId=\"2\" r:id=\"rIdworksheet\"/>");
  auto file = OpenParts(parts);
  EXPECT_EQ(Saved(*file, kWorkbookPart), workbook) << "the first tab is active without a view";
  Activate(*file, 1);
  std::string expected = workbook;
  expected.insert(sheets, "<bookViews><workbookView activeTab=\"1\"/></bookViews>");
  EXPECT_EQ(Saved(*file, kWorkbookPart), expected);
  EXPECT_THAT(Saved(*file, "xl/worksheets/sheet2.xml"), HasSubstr("tabSelected=\"1\""));
  Activate(*file, 0);
  EXPECT_THAT(Saved(*file, kWorkbookPart), HasSubstr("<workbookView activeTab=\"0\"/>"));
}

TEST_F(WorkbookSaveTest, ACreatedWorkbookIsSavedAndRead) {
  auto file = WorkbookFile::Create({"Data 01", "R&D <Costs>"});
  EXPECT_EQ(file->name(), "Book1");
  EXPECT_FALSE(file->has_macros());
  file->Save(Path("empty.xlsx"));
  WorkbookFile::Open(Path("empty.xlsx"))->Save(Path("copy.xlsx"));
  ExpectSameParts(Path("empty.xlsx"), Path("copy.xlsx"));

  SetText(*file, {3, 2}, "text");
  SetFormula(*file, {1, 1}, "'R&D <Costs>'!A1+1");
  Cells(*file).SetValue({1, 1}, CellValue::Number(1));
  file->Save(Path("book.xlsx"));
  auto again = WorkbookFile::Open(Path("book.xlsx"));
  EXPECT_EQ(again->name(), "book.xlsx");
  EXPECT_EQ(again->model().sheets[1]->name, "R&D <Costs>");
  Cell formula = Cells(*again).Get({1, 1});
  ASSERT_NE(formula.formula, 0u);
  EXPECT_EQ(
      FormulaText(again->model().sheets[0]->formulas[formula.formula], {1, 1}, again->model()),
      "'R&D <Costs>'!A1+1");
  EXPECT_EQ(again->model().strings[Cells(*again).Get({3, 2}).value.text], "text");
}

TEST_F(WorkbookSaveTest, MarkupElementsFindTheirPlace) {
  auto file =
      OpenParts(OneSheet("<sheetData/><mergeCells/><conditionalFormatting/><pageMargins/><drawing/"
                         "><mc:AlternateContent "
                         "xmlns:mc=\"x\"><controls/></mc:AlternateContent><extLst/>"));
  SheetMarkup& markup = file->markup(0);
  for (const char* name : {"tableParts", "dataValidations", "legacyDrawing", "sheetPr", "cols"}) {
    markup.FindOrInsert(name).text = "<" + std::string(name) + "/>";
  }
  std::string names;
  for (const MarkupElement& element : markup.elements) names += element.name + " ";
  EXPECT_EQ(names,
            "sheetPr cols sheetData mergeCells conditionalFormatting dataValidations pageMargins "
            "drawing legacyDrawing AlternateContent tableParts extLst ");
  EXPECT_THAT(Saved(*file, kSheetPart),
              HasSubstr("<sheetPr/><cols/><sheetData/><mergeCells/><conditionalFormatting/>"
                        "<dataValidations/>"));
}

}  // namespace
}  // namespace vantora::embedded
