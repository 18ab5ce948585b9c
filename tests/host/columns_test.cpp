// Hiding columns, their widths and places, as a macro reads and writes them.
#include <gtest/gtest.h>

#include "host/session.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

class ColumnsTest : public ::testing::Test {
 protected:
  ColumnsTest() : session_(Session::Create({"Data"})) {}

  SheetModel& Model() { return *session_->file().model().sheets[0]; }
  host::RangePtr Column(int column) { return session_->Worksheet("Data")->Columns(column); }
  // Formats of columns as "first-last attributes", one after the other.
  std::string Formats() {
    std::string text;
    for (const ColumnFormat& format : Model().column_formats) {
      text += std::to_string(format.first) + "-" + std::to_string(format.last) + format.attributes +
              (format.style != 0 ? " style=" + std::to_string(format.style) : "") + ";";
    }
    return text;
  }
  void SetSheetFormat(const std::string& attributes) {
    SheetMarkup& markup = session_->file().markup(0);
    markup.FindOrInsert("sheetFormatPr").text = "<sheetFormatPr " + attributes + "/>";
  }

  std::unique_ptr<Session> session_;
};

TEST_F(ColumnsTest, WidthsAreInPointsAndCharactersOfTheDefaultFont) {
  const struct {
    const char* format;  // of the sheet
    int digit;           // pixels
    const char* column;  // attributes
    double points;
    double characters;
  } cases[] = {
      {"", 7, "", 48, 8.43},
      {"baseColWidth=\"10\"", 7, "", 60, 10.71},
      {"baseColWidth=\"10\"", 6, "", 54, 11.17},
      {"", 8, "", 54, 8.38},
      {"defaultColWidth=\"11.42578125\"", 7, "", 60, 10.71},
      {"", 7, " width=\"19.28515625\" customWidth=\"1\"", 101.25, 18.57},
      {"", 7, " width=\"9.28515625\" hidden=\"1\" customWidth=\"1\"", 0, 0},
      {"", 7, " width=\"0\" customWidth=\"1\"", 0, 0},
      {"", 7, " width=\"0.5703125\" customWidth=\"1\"", 3, 0.33},
      {"defaultColWidth=\"11.42578125\"", 7, " outlineLevel=\"1\"", 60, 10.71},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(std::string(one.format) + one.column);
    session_ = Session::Create({"Data"});
    session_->file().model().styles.max_digit_width = one.digit;
    SetSheetFormat(one.format);
    if (*one.column) Model().column_formats.push_back({3, 3, 0, one.column});
    EXPECT_DOUBLE_EQ(Column(3)->Width(), one.points);
    EXPECT_DOUBLE_EQ(Column(3)->ColumnWidth(), one.characters);
    EXPECT_DOUBLE_EQ(Column(4)->Left(), 2 * Column(1)->Width() + one.points);
  }
}

TEST_F(ColumnsTest, AHiddenColumnCountsNothingAndKeepsItsWidth) {
  Model().column_formats = {
      {2, 4, 3, " width=\"19.28515625\" customWidth=\"1\" outlineLevel=\"1\""}};
  const std::string before = Formats();
  const double left = Column(5)->Left();

  Column(3)->SetColumnsHidden(true);
  EXPECT_TRUE(Column(3)->ColumnsHidden());
  EXPECT_FALSE(Column(2)->ColumnsHidden());
  EXPECT_DOUBLE_EQ(Column(3)->Width(), 0);
  EXPECT_DOUBLE_EQ(Column(5)->Left(), left - 101.25);
  EXPECT_EQ(Formats(),
            "2-2 width=\"19.28515625\" customWidth=\"1\" outlineLevel=\"1\" style=3;"
            "3-3 width=\"19.28515625\" customWidth=\"1\" outlineLevel=\"1\" hidden=\"1\" style=3;"
            "4-4 width=\"19.28515625\" customWidth=\"1\" outlineLevel=\"1\" style=3;");

  Column(3)->SetColumnsHidden(false);
  EXPECT_EQ(Formats(), before);
  EXPECT_DOUBLE_EQ(Column(5)->Left(), left);
}

TEST_F(ColumnsTest, HidingFillsTheGapsBetweenRuns) {
  Model().column_formats = {{2, 2, 0, " width=\"5\""}, {4, 6, 0, " width=\"6\""}};
  auto range = session_->Range("Data!A1:E1");
  EXPECT_FALSE(range->ColumnsHidden());
  range->SetColumnsHidden(true);
  EXPECT_TRUE(range->ColumnsHidden());
  EXPECT_DOUBLE_EQ(Column(6)->Left(), 0);
  EXPECT_EQ(Formats(),
            "1-1 width=\"9.140625\" hidden=\"1\";2-2 width=\"5\" hidden=\"1\";"
            "3-3 width=\"9.140625\" hidden=\"1\";4-5 width=\"6\" hidden=\"1\";6-6 width=\"6\";");
  range->SetColumnsHidden(false);
  EXPECT_EQ(Formats(), "2-2 width=\"5\";4-6 width=\"6\";");
}

TEST_F(ColumnsTest, AHiddenColumnOfNoWidthComesBackWithTheStandardWidth) {
  Model().column_formats = {{2, 2, 0, " width=\"0\" hidden=\"1\" customWidth=\"1\""}};
  Column(2)->SetColumnsHidden(false);
  EXPECT_DOUBLE_EQ(Column(2)->Width(), 48);
}

TEST_F(ColumnsTest, AWidthPutIsRoundedToPixelsAndShowsTheColumn) {
  Model().column_formats = {{2, 3, 5, " width=\"9.140625\" hidden=\"1\" bestFit=\"1\""}};
  Column(2)->SetColumnWidth(10);
  EXPECT_EQ(Formats(),
            "2-2 width=\"10.7109375\" customWidth=\"1\" style=5;"
            "3-3 width=\"9.140625\" hidden=\"1\" bestFit=\"1\" style=5;");
  EXPECT_DOUBLE_EQ(Column(2)->ColumnWidth(), 10);
  Column(2)->SetColumnWidth(8.5);
  EXPECT_DOUBLE_EQ(Column(2)->ColumnWidth(), 8.57);
  Column(2)->SetColumnWidth(0);
  EXPECT_TRUE(Column(2)->ColumnsHidden());
  EXPECT_THROW(Column(2)->SetColumnWidth(255.5), HostError);
}

TEST_F(ColumnsTest, AProtectedSheetRefusesUnlessItLetsColumnsBeFormatted) {
  Model().is_protected = true;
  EXPECT_THROW(Column(2)->SetColumnsHidden(true), HostError);
  EXPECT_THROW(Column(2)->SetColumnWidth(12), HostError);
  EXPECT_EQ(Formats(), "");
  session_->file().markup(0).FindOrInsert("sheetProtection").text =
      "<sheetProtection sheet=\"1\" formatColumns=\"0\"/>";
  Column(2)->SetColumnsHidden(true);
  EXPECT_TRUE(Column(2)->ColumnsHidden());
}

TEST_F(ColumnsTest, TheListOfChangesNamesColumnsThatWereHiddenOrShown) {
  Model().column_formats = {{2, 3, 0, " width=\"5\" hidden=\"1\""}};
  session_->RecordChanges();
  Column(2)->SetColumnsHidden(false);
  for (int column : {6, 7, 9}) Column(column)->SetColumnsHidden(true);
  Column(8)->SetColumnsHidden(true);
  Column(8)->SetColumnsHidden(false);
  EXPECT_EQ(session_->Changes().others,
            (std::vector<std::string>{"columns shown at Data!B:B", "columns hidden at Data!F:G",
                                      "columns hidden at Data!I:I"}));
  Column(1)->Insert(host::XlInsertShiftDirection::kToRight);
  EXPECT_EQ(session_->Changes().others,
            (std::vector<std::string>{"columns shown at Data!C:C", "columns hidden at Data!G:H",
                                      "columns hidden at Data!J:J"}));
}

class ColumnsInFilesTest : public ::testing::Test {
 protected:
  // The sheet's part after a save, between the default formats and the cells.
  std::string SavedColumns(Session& session) {
    session.Save(folder_ / "saved.xlsx");
    WorkbookFile& file = session.file();
    std::string text = file.package().Read(file.part_of(0));
    std::size_t end = text.find("<sheetData");
    std::size_t begin = text.find("<sheetFormatPr");
    begin = text.find("/>", begin) + 2;
    return text.substr(begin, end - begin);
  }
  std::unique_ptr<Session> WithFormat(const std::string& format) {
    auto session = Session::Create({"Data"});
    session->file().markup(0).FindOrInsert("sheetFormatPr").text = format;
    session->file().markup(0).changed = true;
    return session;
  }

  testing::TemporaryFolder folder_;
};

TEST_F(ColumnsInFilesTest, ASheetWithoutColumnsGetsThemAtTheirPlaceAndLosesThemAgain) {
  auto session = WithFormat("<sheetFormatPr baseColWidth=\"10\" defaultRowHeight=\"15\"/>");
  session->Worksheet("Data")->Columns(4)->SetColumnsHidden(true);
  EXPECT_EQ(SavedColumns(*session),
            "<cols><col min=\"4\" max=\"4\" width=\"11.42578125\" hidden=\"1\"/></cols>");
  auto again = Session::Open(folder_ / "saved.xlsx");
  EXPECT_TRUE(again->Worksheet("Data")->Columns(4)->ColumnsHidden());
  again->Worksheet("Data")->Columns(4)->SetColumnsHidden(false);
  EXPECT_EQ(SavedColumns(*again), "");
}

TEST_F(ColumnsInFilesTest, AHiddenColumnIsCutOutOfItsRun) {
  auto session = WithFormat("<sheetFormatPr defaultRowHeight=\"15\"/>");
  session->Worksheet("Data")->Range(1, 1, 1, 3)->SetColumnWidth(12);
  session->Worksheet("Data")->Columns(2)->SetColumnsHidden(true);
  EXPECT_EQ(SavedColumns(*session),
            "<cols><col min=\"1\" max=\"1\" width=\"12.7109375\" customWidth=\"1\"/>"
            "<col min=\"2\" max=\"2\" width=\"12.7109375\" customWidth=\"1\" hidden=\"1\"/>"
            "<col min=\"3\" max=\"3\" width=\"12.7109375\" customWidth=\"1\"/></cols>");
}

TEST_F(ColumnsInFilesTest, ARunWithoutAWidthIsWrittenWithTheSheetsStandardWidth) {
  auto session = WithFormat("<sheetFormatPr baseColWidth=\"10\" defaultRowHeight=\"15\"/>");
  SheetModel& model = *session->file().model().sheets[0];
  model.column_formats = {{2, 2, 0, " outlineLevel=\"1\""}};
  model.column_formats_changed = true;
  EXPECT_EQ(SavedColumns(*session),
            "<cols><col min=\"2\" max=\"2\" width=\"11.42578125\" outlineLevel=\"1\"/></cols>");
}

}  // namespace
}  // namespace vantora::embedded
