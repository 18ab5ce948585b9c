// Sorting rows and listing names as Excel does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Sorting : public testing::Test {
 protected:
  host::RangePtr Range(std::string_view reference) { return session_->Range(reference); }
  SheetModel& Sheet() { return *session_->file().model().sheets[0]; }
  // Puts values side by side.
  void Put(const std::string& cell, const std::vector<Value>& values) {
    host::RangePtr first = Range(cell);
    int column = 1;
    for (const Value& value : values) first->Cells(1, column++)->SetValue(value);
  }
  void PutDown(const std::string& cell, const std::vector<Value>& values) {
    host::RangePtr first = Range(cell);
    int row = 1;
    for (const Value& value : values) first->Cells(row++, 1)->SetValue(value);
  }
  std::vector<Value> Down(const std::string& cell, int count) {
    host::RangePtr first = Range(cell);
    std::vector<Value> values;
    for (int row = 1; row <= count; ++row) values.push_back(first->Cells(row, 1)->Value());
    return values;
  }
  void Sort(const std::string& range, const std::string& key1, const std::string& key2) {
    Range(range)->Sort(Range(key1), Range(key2));
  }
  std::string FormulaAt(CellAddress cell) {
    FormulaId formula = Sheet().cells.Get(cell).formula;
    return formula == 0 ? ""
                        : FormulaText(Sheet().formulas[formula], cell, session_->file().model());
  }
  std::string Refusal(const std::string& range, const std::string& key1, const std::string& key2) {
    try {
      Sort(range, key1, key2);
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), HostError::kApplicationDefined);
      return error.description();
    }
    return "";
  }

  std::unique_ptr<Session> session_ = Session::Create({"Data", "Other"});
};

TEST_F(Sorting, OrdersNumbersTextsLogicalsErrorsBlanks) {
  PutDown("A1", {Value(CellError::kRef), Value("b"), Value(), Value(true), Value(10), Value("A"),
                 Value(CellError::kDiv0), Value(false), Value("'3"), Value(-2)});
  PutDown("B1", {Value(1), Value(2), Value(3), Value(4), Value(5), Value(6), Value(7), Value(8),
                 Value(9), Value(10)});
  Sort("A1:B10", "A1", "A1");
  EXPECT_THAT(Down("A1", 10),
              ElementsAre(Value(-2), Value(10), Value("3"), Value("A"), Value("b"), Value(false),
                          Value(true), Value(CellError::kRef), Value(CellError::kDiv0), Value()));
  // Errors are all alike, and keep their order.
  EXPECT_THAT(Down("B1", 10), ElementsAre(Value(10), Value(5), Value(9), Value(6), Value(2),
                                          Value(8), Value(4), Value(1), Value(7), Value(3)));
}

TEST_F(Sorting, OrdersTextsAsReadersDo) {
  const std::vector<Value> ordered = {Value("_total"),
                                      Value("10 km"),
                                      Value("2 km"),
                                      Value("A b"),
                                      Value("A2"),
                                      Value("Ab"),
                                      Value("coop"),
                                      Value("co-op"),
                                      Value("Coop1"),
                                      Value("eclat"),
                                      Value("\xC3\xA9"
                                            "clat"),
                                      Value("eclats"),
                                      Value("Z\xC3\xBCrich"),
                                      Value("Zz")};
  std::vector<Value> mixed(ordered.rbegin(), ordered.rend());
  PutDown("A1", mixed);
  Sort("A1:B14", "A1", "B1");
  EXPECT_EQ(Down("A1", 14), ordered);
}

TEST_F(Sorting, TakesTheSecondKeyAmongEqualsAndIsStable) {
  Put("A1", {Value("x"), Value(2), Value("first")});
  Put("A2", {Value("X"), Value(1), Value("second")});
  Put("A3", {Value("a"), Value(9), Value("third")});
  Put("A4", {Value("x"), Value(1), Value("fourth")});
  Sort("A1:C4", "A1", "B1");
  EXPECT_THAT(Down("C1", 4),
              ElementsAre(Value("third"), Value("second"), Value("fourth"), Value("first")));
}

TEST_F(Sorting, GuessesAHeaderWhereTextsStandAboveOtherThings) {
  Put("A1", {Value("Zone"), Value("Amount")});
  Put("A2", {Value("b"), Value(2)});
  Put("A3", {Value("a"), Value(1)});
  Sort("A1:B3", "A1", "B1");
  EXPECT_THAT(Down("A1", 3), ElementsAre(Value("Zone"), Value("a"), Value("b")));

  // Texts above texts are data.
  Put("D1", {Value("Zone"), Value("q")});
  Put("D2", {Value("b"), Value("r")});
  Sort("D1:E2", "D1", "E1");
  EXPECT_THAT(Down("D1", 2), ElementsAre(Value("b"), Value("Zone")));

  // So is a row with anything but a text.
  Put("G1", {Value("Zone"), Value(5)});
  Put("G2", {Value("b"), Value(6)});
  Sort("G1:H2", "G1", "H1");
  EXPECT_THAT(Down("G1", 2), ElementsAre(Value("b"), Value("Zone")));
}

TEST_F(Sorting, MovesFormulasRelativelyAndCalculates) {
  Put("A1", {Value(30), Value("=A1*2"), Value("=$A$1"), Value("=Other!A1"), Value("=A2")});
  Put("A2", {Value(10), Value("=A2*2"), Value("=$A$2"), Value("=Other!A2"), Value("=A3")});
  Put("A3", {Value(20), Value("=A3*2"), Value("=$A$3"), Value("=Other!A3"), Value("=A1")});
  Range("H1")->SetValue(Value("=B1"));
  Sort("A1:E3", "A1", "A1");
  EXPECT_THAT(Down("B1", 3), ElementsAre(Value(20), Value(40), Value(60)));
  EXPECT_EQ(FormulaAt({1, 2}), "A1*2");
  EXPECT_EQ(FormulaAt({1, 3}), "$A$2");
  EXPECT_EQ(FormulaAt({3, 4}), "Other!A3");
  EXPECT_EQ(FormulaAt({1, 5}), "A2");     // one row down, as before
  EXPECT_EQ(FormulaAt({2, 5}), "#REF!");  // two rows up leaves the sheet
  // What refers to the rows from outside looks at the same place.
  EXPECT_EQ(FormulaAt({1, 8}), "B1");
  EXPECT_EQ(Range("H1")->Value(), Value(20));
}

TEST_F(Sorting, MovesFormatsButNotBorders) {
  Put("A1", {Value(2), Value("b")});
  Put("A2", {Value(1), Value("a")});
  Range("B1")->Interior()->SetColorIndex(6);
  Range("A1:B1")->BorderAround(host::XlBorderWeight::kThin, 0);
  const StyleId upper = Sheet().StyleOf({1, 1});
  Sort("A1:B2", "A1", "B1");
  EXPECT_EQ(Range("B1")->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_EQ(Range("B2")->Interior()->ColorIndex(), 6);
  EXPECT_EQ(Sheet().StyleOf({1, 1}), upper);
  EXPECT_EQ(Sheet().StyleOf({2, 1}), 0u);
}

TEST_F(Sorting, MovesCommentsAndHyperlinks) {
  PutDown("A1", {Value(3), Value(1), Value(2)});
  Range("A1")->AddComment()->Text("of three");
  SheetMarkup& markup = session_->file().markup(0);
  markup.FindOrInsert("hyperlinks").text =
      "<hyperlinks><hyperlink ref=\"B3\" location=\"Other!A1\"/><hyperlink ref=\"D1\" "
      "location=\"Other!A2\"/></hyperlinks>";
  Sort("A1:B3", "A1", "B1");
  EXPECT_EQ(markup.Find("hyperlinks")->text,
            "<hyperlinks><hyperlink ref=\"B2\" location=\"Other!A1\"/><hyperlink ref=\"D1\" "
            "location=\"Other!A2\"/></hyperlinks>");
  EXPECT_THAT([&] { Range("A3")->AddComment(); },
              testing::Throws<HostError>(
                  testing::Property(&HostError::description, HasSubstr("already has a comment"))));
}

TEST_F(Sorting, LeavesHiddenRowsInPlace) {
  PutDown("A1", {Value(4), Value(3), Value(2), Value(1)});
  Range("A2")->SetRowsHidden(true);
  Sort("A1:B4", "A1", "B1");
  EXPECT_THAT(Down("A1", 4), ElementsAre(Value(1), Value(3), Value(2), Value(4)));
}

TEST_F(Sorting, IsRefusedAsExcelRefusesIt) {
  PutDown("A1", {Value(2), Value(1), Value(0)});
  EXPECT_THAT(Refusal("A1:B3", "C1", "A1"), HasSubstr("sort reference is not valid"));
  EXPECT_THAT(Refusal("A1:B3", "A1", "Other!A1"), HasSubstr("sort reference is not valid"));
  EXPECT_THAT(Refusal("A1", "A1", "A1"), HasSubstr("single cell"));

  SheetMarkup& markup = session_->file().markup(0);
  markup.FindOrInsert("mergeCells").text =
      "<mergeCells count=\"1\"><mergeCell ref=\"A2:B2\"/></mergeCells>";
  EXPECT_THAT(Refusal("A1:B3", "A1", "B1"), HasSubstr("merged cells need to be the same size"));
  markup.Remove("mergeCells");

  Sheet().arrays.push_back({{1, 2, 2, 2}});
  EXPECT_THAT(Refusal("A1:B3", "A1", "B1"), HasSubstr("part of an array"));
  Sheet().arrays.clear();
  Sheet().is_protected = true;
  EXPECT_THAT(Refusal("A1:B3", "A1", "B1"), HasSubstr("protected"));
  Sheet().is_protected = false;
  EXPECT_EQ(Range("A1")->Value(), Value(2));
  EXPECT_EQ(Refusal("A1:B3", "A1", "B1"), "");
}

TEST_F(Sorting, ListOfNamesIsAlphabeticalAndText) {
  auto& names = session_->file().model().names;
  names.push_back({.name = "beta", .scope = -1, .refers_to = "Data!$A$1:$A$9"});
  names.push_back({.name = "Alpha", .scope = -1, .refers_to = "\"#1\""});
  names.push_back({.name = "_secret", .scope = -1, .refers_to = "1", .is_hidden = true});
  names.push_back({.name = "local", .scope = 0, .refers_to = "Data!#REF!"});
  names.push_back({.name = "elsewhere", .scope = 1, .refers_to = "Other!$A$1"});
  names.push_back({.name = "alpha", .scope = 1, .refers_to = "2"});
  Range("C5")->ListNames();
  EXPECT_THAT(Down("C5", 4), ElementsAre(Value("Alpha"), Value("beta"), Value("local"), Value()));
  EXPECT_THAT(Down("D5", 4), ElementsAre(Value("=\"#1\""), Value("=Data!$A$1:$A$9"),
                                         Value("=Data!#REF!"), Value()));
  EXPECT_EQ(FormulaAt({5, 4}), "");
  // A name of the sheet's own stands for the workbook's.
  Range("Other!A1")->ListNames();
  EXPECT_EQ(Range("Other!B1")->Value(), Value("=2"));
  EXPECT_EQ(Range("Other!A3")->Value(), Value("elsewhere"));
}

TEST_F(Sorting, RoutinesOfSheetsAreThereOrRefused) {
  host::WorksheetPtr sheet = session_->Worksheet("Data");
  try {
    sheet->CallRoutine("ResetKeySortButtons");
    FAIL() << "there is no such routine";
  } catch (const HostError& error) {
    EXPECT_EQ(error.number(), HostError::kMemberNotSupported);
  }
  session_->AddSheetRoutine("ResetKeySortButtons");
  sheet->CallRoutine("resetkeysortbuttons");
}

}  // namespace
}  // namespace vantora::embedded
