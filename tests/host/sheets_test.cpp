// Sheets that come into a workbook, their names, and pastes from sheet to sheet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/host_error.h"
#include "host/session.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

using host::XlPasteSpecialOperation;
using host::XlPasteType;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SheetsTest : public ::testing::Test {
 protected:
  SheetsTest() : session(Session::Create({"Plan", "Data"})) {
    other = session->CreateFurther("Other.xlsx", {"Start"});
  }
  host::WorkbookPtr Book(int number = 0) { return session->application()->Workbooks().at(number); }
  host::WorksheetPtr Add(int number = 0) {
    host::SheetsPtr sheets = Book(number)->Sheets();
    return sheets->Add(sheets->Item(sheets->Count()));
  }
  std::vector<std::string> Names(int number = 0) {
    std::vector<std::string> names;
    host::SheetsPtr sheets = Book(number)->Sheets();
    for (int i = 1; i <= sheets->Count(); ++i) names.push_back(sheets->Item(i)->Name());
    return names;
  }
  host::RangePtr At(const std::string& reference, int workbook = 0) {
    return session->Range(reference, workbook);
  }
  void Paste(const std::string& from, const std::string& to, int workbook, XlPasteType part) {
    At(from)->Copy();
    At(to, workbook)->PasteSpecial(part, XlPasteSpecialOperation::kNone, false, false);
  }
  // The text with which the host refuses.
  template <typename Function>
  static std::string Refusal(Function&& call, int number = 1004) {
    try {
      call();
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), number);
      return error.description();
    }
    return "not refused";
  }

  std::unique_ptr<Session> session;
  int other = 0;
};

TEST_F(SheetsTest, AnAddedSheetIsEmptyActiveAndHasTheNextFreeName) {
  Add();
  EXPECT_EQ(session->application()->ActiveSheet()->Name(), "Sheet1");
  host::SheetsPtr sheets = Book()->Sheets();
  sheets->Add(sheets->Item("PLAN"));
  EXPECT_THAT(Names(), ElementsAre("Plan", "Sheet2", "Data", "Sheet1"));
  EXPECT_EQ(At("Sheet2!A1")->Formula(), "");
  // In another workbook, that one becomes active.
  Add(other);
  EXPECT_EQ(session->application()->ActiveWorkbook()->Name(), "Other.xlsx");
  EXPECT_THAT(Names(other), ElementsAre("Start", "Sheet1"));
}

TEST_F(SheetsTest, AMissingSheetIsNoItem) {
  for (int index : {0, 3, -1}) {
    EXPECT_THAT(Refusal([&] { Book()->Sheets()->Item(index); }, 9), HasSubstr("Subscript"));
  }
  EXPECT_THAT(Refusal([&] { Book()->Sheets()->Item("Pla"); }, 9), HasSubstr("\"Pla\""));
}

TEST_F(SheetsTest, NamesThatNoSheetMayHaveAreRefused) {
  host::WorksheetPtr sheet = Add();
  for (const char* name :
       {"", "a:b", "a\\b", "a/b", "a?b", "a*b", "[a", "a]", "'a", "a'", "History", "hIstory",
        "A name of thirty-two characters!", "a\tb", "data", "PLAN"}) {
    EXPECT_THAT(Refusal([&] { sheet->SetName(name); }), HasSubstr("can't be named")) << name;
  }
  EXPECT_EQ(sheet->Name(), "Sheet1");
  for (const char* name : {"A name of thirty-one characters", "Owner's Equity", "a!b",
                           "\xC3\x9C"
                           "bersicht",
                           "Histories", "shEEt1", "Sheet1"}) {
    sheet->SetName(name);
    EXPECT_EQ(sheet->Name(), name);
  }
}

TEST_F(SheetsTest, FormulasAndNamesFollowANewName) {
  host::WorksheetPtr sheet = Add();
  At("Plan!A1")->SetFormula("=Sheet1!B2*2");
  Book()->Names()->Add("first", "=Sheet1!R1C1");
  sheet->SetName("Owner's Equity");
  EXPECT_EQ(At("Plan!A1")->Formula(), "='Owner''s Equity'!B2*2");
  EXPECT_EQ(Book()->Names()->Item("first")->RefersToRange()->Worksheet()->Name(), "Owner's Equity");
  EXPECT_EQ(session->file().model().FindName("first", 0)->refers_to, "'Owner''s Equity'!$A$1");
}

TEST_F(SheetsTest, FormulasOnMissingSheetsAreRefused) {
  for (const char* formula :
       {"=Budget!A1", "=1+'My Budget'!A1", "=[1]Plan!A1", "=SUM(Plan:Gone!A1)"}) {
    EXPECT_THAT(Refusal([&] { At("Plan!A1")->SetFormula(formula); }), HasSubstr("does not have"))
        << formula;
    EXPECT_THAT(Refusal([&] { At("Plan!A1")->SetValue(Value(formula)); }),
                HasSubstr("does not have"))
        << formula;
  }
  Book()->Names()->Add("rate", "=Plan!R9C9");
  for (const char* formula : {"=Data!A1", "='Data'!A1&\"Gone!\"", "=#REF!+1", "=rate"}) {
    At("Plan!A1")->SetFormula(formula);
    EXPECT_TRUE(At("Plan!A1")->HasFormula()) << formula;
  }
}

TEST_F(SheetsTest, PastedFormulasReferToTheSheetTheyComeTo) {
  At("Plan!A1")->SetValue(Value(3));
  At("Data!A1")->SetValue(Value(5));
  At("Plan!B1")->SetFormula("=A1+Plan!A1+$A$1");
  Paste("Plan!B1", "Data!C1", 0, XlPasteType::kFormulas);
  EXPECT_EQ(At("Data!C1")->Formula(), "=B1+Plan!B1+$A$1");
  EXPECT_EQ(At("Data!C1")->Value(), Value(14));
}

TEST_F(SheetsTest, OnlyFormulasWithoutLinksArePastedIntoAnotherWorkbook) {
  At("Plan!A1")->SetValue(Value("text"));
  At("Plan!B1")->SetFormula("=LEN(A1)");
  Paste("Plan!A1:B1", "Start!A1:B1", other, XlPasteType::kFormulas);
  EXPECT_EQ(At("Start!B1", other)->Value(), Value(4));
  At("Plan!B1")->SetFormula("=LEN(Data!A1)");
  EXPECT_THAT(Refusal([&] { Paste("Plan!B1", "Start!B1", other, XlPasteType::kFormulas); }),
              HasSubstr("would become a link"));
  Paste("Plan!A1:B1", "Start!A1:B1", other, XlPasteType::kValues);
  EXPECT_EQ(At("Start!B1", other)->Formula(), "0");
}

TEST_F(SheetsTest, FormatsOfAnotherWorkbookAreMergedOnce) {
  StyleEditor& formats = session->file().style_editor();
  FormatChange bold;
  bold.bold = true;
  FormatChange bold_and_yellow = bold;
  bold_and_yellow.fill_color_index = 6;
  CellStore& cells = session->file().model().sheets[0]->cells;
  cells.SetStyle({1, 1}, formats.Changed(0, bold_and_yellow));
  cells.SetStyle({2, 1}, formats.Changed(0, bold));
  const Styles& styles = session->file(other).model().styles;
  const std::size_t before = styles.formats.size();
  Paste("Plan!A1:B2", "Start!C3:D4", other, XlPasteType::kFormats);
  EXPECT_EQ(At("Start!C3", other)->Interior()->ColorIndex(), 6);
  EXPECT_EQ(styles.formats.size(), before + 2);
  Paste("Plan!A1:B2", "Start!C9:D10", other, XlPasteType::kFormats);
  EXPECT_EQ(styles.formats.size(), before + 2);
  EXPECT_EQ(At("Start!C3", other)->Formula(), "");
}

TEST_F(SheetsTest, CommentsComeWithTheirBoxes) {
  for (int row : {1, 2, 9}) {
    session->Worksheet("Plan")->Cells(row, 1)->AddComment()->Text("row " + std::to_string(row));
  }
  session->Worksheet("Start", other)->Cells(5, 2)->AddComment()->Text("goes");
  Paste("Plan!A1:A3", "Start!B4:B6", other, XlPasteType::kComments);
  WorkbookFile& file = session->file(other);
  std::map<std::string, std::string> texts;
  for (const Relationship& relationship : file.package().RelationshipsOf(file.part_of(0))) {
    texts[relationship.type.substr(relationship.type.rfind('/') + 1)] =
        file.package().Read(relationship.target);
  }
  EXPECT_THAT(texts["comments"], HasSubstr("ref=\"B4\""));
  EXPECT_THAT(texts["comments"], HasSubstr("row 2"));
  EXPECT_THAT(texts["comments"], ::testing::Not(HasSubstr("goes")));
  EXPECT_THAT(texts["vmlDrawing"], HasSubstr("<x:Row>3</x:Row><x:Column>1</x:Column>"));
  EXPECT_THAT(texts["vmlDrawing"], ::testing::Not(HasSubstr("<x:Row>8</x:Row>")));
}

TEST_F(SheetsTest, APaletteIsSavedAndRead) {
  host::Palette colors = Book()->Colors();
  ASSERT_EQ(colors.size(), 56u);
  EXPECT_EQ(colors[2], 0x0000FF);  // red
  colors[2] = 0x123456;
  Book()->SetColors(colors);
  const testing::TemporaryFolder folder;
  const auto path = folder / "saved.xlsx";
  session->Save(path);
  EXPECT_EQ(Session::Open(path)->application()->ActiveWorkbook()->Colors(), colors);
  EXPECT_THAT(Refusal([&] { Book()->SetColors({1, 2, 3}); }), HasSubstr("56 colors"));
}

TEST_F(SheetsTest, TwoWorkbooksOfOneNameAreNotOpenAtOnce) {
  EXPECT_THROW(session->CreateFurther("OTHER.xlsx", {"A"}), FileError);
  EXPECT_EQ(session->workbook_count(), 2);
}

}  // namespace
}  // namespace vantora::embedded
