// Formats that macros set, read back from the saved file, and clearing cells.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/session.h"
#include "package/xml_tree.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

namespace fs = std::filesystem;

using host::XlBorderWeight;
using host::XlHAlign;
using host::XlPattern;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Formats : public ::testing::Test {
 protected:
  host::RangePtr Range(std::string_view reference) { return session_->Range(reference); }
  SheetModel& Sheet() { return *session_->file().model().sheets[0]; }
  StyleId StyleOf(CellAddress cell) { return Sheet().StyleOf(cell); }

  void SaveAndReopen() {
    session_->Save(folder_ / "book.xlsx");
    session_ = Session::Open(folder_ / "book.xlsx");
  }
  pugi::xml_document StylesPart() { return ParseTree(session_->file().package(), "xl/styles.xml"); }
  static std::string Markup(pugi::xml_node node) {
    std::ostringstream text;
    node.print(text, "", pugi::format_raw);
    return text.str();
  }
  // The entry of a table that a cell's format uses.
  std::string EntryOf(CellAddress cell, const char* table, const char* entry, const char* id) {
    pugi::xml_document part = StylesPart();
    pugi::xml_node sheet = Child(part, "styleSheet");
    std::vector<pugi::xml_node> formats;
    ForEachChild(Child(sheet, "cellXfs"), "xf", [&](pugi::xml_node xf) { formats.push_back(xf); });
    std::vector<pugi::xml_node> entries;
    ForEachChild(Child(sheet, table), entry, [&](pugi::xml_node one) { entries.push_back(one); });
    return Markup(entries.at(formats.at(StyleOf(cell)).attribute(id).as_uint()));
  }
  std::string FillOf(CellAddress cell) { return EntryOf(cell, "fills", "fill", "fillId"); }
  std::string FontOf(CellAddress cell) { return EntryOf(cell, "fonts", "font", "fontId"); }
  std::string BorderOf(CellAddress cell) { return EntryOf(cell, "borders", "border", "borderId"); }
  std::string FormatOf(CellAddress cell) {
    pugi::xml_document part = StylesPart();
    pugi::xml_node xf = Child(Child(Child(part, "styleSheet"), "cellXfs"), "xf");
    for (StyleId i = 0; i < StyleOf(cell); ++i) xf = xf.next_sibling();
    return Markup(xf);
  }

  template <typename Call>
  std::string Refusal(Call&& call) {
    try {
      call();
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), HostError::kApplicationDefined);
      return error.description();
    }
    return "";
  }

  std::unique_ptr<Session> session_ = Session::Create({"Data"});
  testing::TemporaryFolder folder_;
};

TEST_F(Formats, AreInTheSavedFile) {
  Range("B2")->Interior()->SetColorIndex(45);
  Range("B2")->Interior()->SetPattern(XlPattern::kSolid);
  host::FontPtr font = Range("B3")->Font();
  font->SetSize(8.5);
  font->SetBold(true);
  font->SetItalic(true);
  font->SetColorIndex(3);
  Range("B4")->SetHorizontalAlignment(XlHAlign::kLeft);
  Range("B4")->SetWrapText(true);
  Range("B5:C6")->BorderAround(XlBorderWeight::kThin, 5);
  Range("B8:D8")
      ->Borders(host::XlBordersIndex::kInsideVertical)
      ->SetWeight(XlBorderWeight::kHairline);
  Range("B8:D8")->Borders(host::XlBordersIndex::kInsideVertical)->SetColorIndex(16);
  SaveAndReopen();

  EXPECT_EQ(Range("B2")->Interior()->ColorIndex(), 45);
  EXPECT_EQ(FillOf({2, 2}),
            "<fill><patternFill patternType=\"solid\"><fgColor indexed=\"52\"/>"
            "<bgColor indexed=\"64\"/></patternFill></fill>");
  EXPECT_EQ(FontOf({3, 2}),
            "<font><b/><i/><sz val=\"8.5\"/><color indexed=\"10\"/>"
            "<name val=\"Calibri\"/><family val=\"2\"/></font>");
  EXPECT_THAT(FormatOf({4, 2}),
              HasSubstr("applyAlignment=\"1\"><alignment horizontal=\"left\" wrapText=\"1\"/>"));
  const std::string line = " style=\"thin\"><color indexed=\"12\"/></";
  EXPECT_EQ(BorderOf({5, 2}), "<border><left" + line + "left><right/><top" + line +
                                  "top><bottom/><diagonal/></border>");
  EXPECT_EQ(BorderOf({6, 3}), "<border><left/><right" + line + "right><top/><bottom" + line +
                                  "bottom><diagonal/></border>");
  const std::string inside = " style=\"hair\"><color indexed=\"23\"/></";
  EXPECT_EQ(BorderOf({8, 2}),
            "<border><left/><right" + inside + "right><top/><bottom/><diagonal/></border>");
  EXPECT_EQ(BorderOf({8, 3}), "<border><left" + inside + "left><right" + inside +
                                  "right><top/><bottom/><diagonal/></border>");
}

TEST_F(Formats, ThatAreTakenAwayAgainLeaveTheCellAsItWas) {
  Range("B2")->Interior()->SetColorIndex(45);
  Range("B2")->Interior()->SetColorIndex(host::kColorIndexNone);
  EXPECT_EQ(Range("B2")->Interior()->ColorIndex(), host::kColorIndexNone);
  Range("B3")->Font()->SetBold(true);
  Range("B3")->Font()->SetBold(false);
  // What is so already makes neither a style nor a cell.
  Range("B4")->SetWrapText(false);
  Range("B4")->Interior()->SetColorIndex(host::kColorIndexNone);
  EXPECT_FALSE(Sheet().cells.Exists({4, 2}));
  SaveAndReopen();
  EXPECT_THAT(FillOf({2, 2}), HasSubstr("patternType=\"none\""));
  EXPECT_THAT(FontOf({3, 2}), ::testing::Not(HasSubstr("<b")));
}

TEST_F(Formats, OfManyCellsAreOneStyle) {
  Range("A1:Z4000")->Font()->SetBold(true);
  Range("A1:Z4000")->Interior()->SetColorIndex(6);
  for (int row = 1; row <= 300; ++row) {
    host::InteriorPtr fill = session_->Worksheet("Data")->Cells(row, 30)->Interior();
    fill->SetColorIndex(host::kColorIndexNone);
    fill->SetColorIndex(6);
    fill->SetPattern(XlPattern::kSolid);
  }
  SaveAndReopen();
  pugi::xml_document part = StylesPart();
  pugi::xml_node sheet = Child(part, "styleSheet");
  // The default one, bold alone, bold and filled, filled alone.
  EXPECT_EQ(Child(sheet, "cellXfs").attribute("count").as_int(), 4);
  EXPECT_EQ(Child(sheet, "fonts").attribute("count").as_int(), 2);
  EXPECT_EQ(Child(sheet, "fills").attribute("count").as_int(), 3);
  EXPECT_EQ(Range("Z4000")->Interior()->ColorIndex(), 6);
}

TEST_F(Formats, OfWholeColumnsMakeNoCells) {
  Range("B7")->SetValue(Value(1));
  Range("B:C")->Interior()->SetColorIndex(6);
  EXPECT_EQ(Sheet().cells.size(), 1u);
  SaveAndReopen();
  EXPECT_EQ(Range("B7")->Interior()->ColorIndex(), 6);
  EXPECT_EQ(Range("C9000")->Interior()->ColorIndex(), 6);
  EXPECT_EQ(Range("D7")->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_THAT(Refusal([&] { Range("3:3")->Interior()->SetColorIndex(6); }),
              HasSubstr("not whole rows"));
}

TEST_F(Formats, AreRefusedOnAProtectedSheetAndOutsideThePalette) {
  EXPECT_THAT(Refusal([&] { Range("B2")->Interior()->SetColorIndex(57); }),
              HasSubstr("no colour 57"));
  EXPECT_THAT(Refusal([&] { Range("B2")->Font()->SetSize(0); }), HasSubstr("1 to 409"));
  Sheet().is_protected = true;
  EXPECT_THAT(Refusal([&] { Range("B2")->Interior()->SetColorIndex(5); }), HasSubstr("protected"));
  EXPECT_THAT(Refusal([&] { Range("B2")->Clear(); }), HasSubstr("protected"));
  EXPECT_THAT(Refusal([&] { Range("B2")->ClearContents(); }), HasSubstr("protected"));
}

TEST_F(Formats, ClearTakesContentsFormatsAndComments) {
  Range("B2")->SetValue(Value(5));
  Range("B3")->SetValue(Value("=B2*2"));
  Range("D2")->SetValue(Value("=SUM(B2:B3)"));
  Range("B2:B3")->Interior()->SetColorIndex(6);
  Range("B3")->AddComment();
  Range("B2:C9")->Clear();
  EXPECT_EQ(Range("D2")->Value(), Value(0));
  EXPECT_EQ(Range("B2")->Interior()->ColorIndex(), host::kColorIndexNone);
  // Nothing is left there: the used range ends where the rest does.
  EXPECT_EQ(session_->Worksheet("Data")->UsedRange()->Column(), 4);
  SaveAndReopen();
  EXPECT_EQ(Range("D2")->Value(), Value(0));
  Range("B3")->AddComment();
}

TEST_F(Formats, ClearOfSeveralAreasAndOfAFormattedColumn) {
  Range("A:A")->Interior()->SetColorIndex(6);
  Range("A1:C1")->SetValue(Value(1));
  session_->application()->Union(Range("A1"), Range("C1"))->Clear();
  EXPECT_EQ(Range("A1")->Value(), Value());
  EXPECT_EQ(Range("B1")->Value(), Value(1));
  EXPECT_EQ(Range("C1")->Value(), Value());
  // The column's format does not come through.
  EXPECT_EQ(Range("A1")->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_EQ(Range("A2")->Interior()->ColorIndex(), 6);
}

TEST_F(Formats, ClearContentsLeavesFormats) {
  Range("B2")->SetValue(Value("=1+1"));
  Range("B2")->Interior()->SetColorIndex(6);
  Range("C2")->SetValue(Value("=B2+1"));
  Range("B1:B1048576")->ClearContents();
  EXPECT_EQ(Range("B2")->Value(), Value());
  EXPECT_EQ(Range("C2")->Value(), Value(1));
  EXPECT_EQ(Range("B2")->Interior()->ColorIndex(), 6);
}

TEST_F(Formats, PutOfABlockWritesAColumnAndCalculates) {
  Range("D1")->SetValue(Value("=SUM(B2:B5)"));
  const std::vector<Value> rows = {Value("12"), Value("text"), Value(), Value(30)};
  Range("B4")->SetValue(Value("old"));
  Range("B2:B5")->SetValues(rows);
  EXPECT_EQ(Range("B2")->Value(), Value(12));  // a text that reads as a number becomes one
  EXPECT_EQ(Range("B3")->Value(), Value("text"));
  EXPECT_EQ(Range("B4")->Value(), Value());
  EXPECT_EQ(Range("D1")->Value(), Value(42));
}

}  // namespace
}  // namespace vantora::embedded
