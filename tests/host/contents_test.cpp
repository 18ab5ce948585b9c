// Formulas as texts, emptying, and pastes of every size.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session.h"

namespace vantora::embedded {
namespace {

using host::XlPasteSpecialOperation;
using host::XlPasteType;
using testing::ElementsAre;

class ContentsTest : public testing::Test {
 protected:
  ContentsTest() : session_(Session::Create({"Data"})) {
    session_->file().model().styles.formats.resize(3);
    session_->file().model().styles.formats[1].text_format = true;
    session_->file().model().styles.formats[2].fill_color_index = 15;
  }

  SheetModel& Sheet() { return *session_->file().model().sheets[0]; }
  host::RangePtr Range(std::string_view cell) { return session_->Range(cell); }
  void Put(std::string_view cell, const Value& value) { Range(cell)->SetValue(value); }
  Value Get(std::string_view cell) { return Range(cell)->Value(); }
  std::string Formula(std::string_view cell) { return Range(cell)->Formula(); }
  void Paste(std::string_view from, std::string_view to,
             XlPasteType type = XlPasteType::kFormulas) {
    Range(from)->Copy();
    Range(to)->PasteSpecial(type, XlPasteSpecialOperation::kNone, false, false);
  }
  // The numbers of a rectangle by row, 0 for empty cells.
  std::vector<double> Numbers(std::string_view area) {
    std::vector<double> numbers;
    host::RangePtr range = Range(area);
    for (int row = 1; row <= range->RowsCount(); ++row) {
      for (int column = 1; column <= range->ColumnsCount(); ++column) {
        const Value value = range->Cells(row, column)->Value();
        numbers.push_back(value.IsNumber() ? value.AsNumber() : 0);
      }
    }
    return numbers;
  }

  std::unique_ptr<Session> session_;
};

TEST_F(ContentsTest, AFormulaIsTheTextThatWouldEnterTheCell) {
  Sheet().cells.SetStyle({20, 1}, 1);
  const struct {
    Value put;
    std::string formula;
    bool has_formula;
  } cases[] = {
      {"=$A$3+B5", "=$A$3+B5", true}, {12.5, "12.5", false},
      {0.1 + 0.2, "0.3", false},      {1e20, "100000000000000000000", false},
      {true, "TRUE", false},          {CellError::kDiv0, "#DIV/0!", false},
      {"'12", "12", false},           {"BS", "BS", false},
      {Value(), "", false},           {"=_xlfn.IFS(TRUE,1)", "=IFS(TRUE,1)", true},
  };
  for (const auto& one : cases) {
    Put("C4", one.put);
    EXPECT_EQ(Formula("C4"), one.formula);
    EXPECT_EQ(Range("C4")->HasFormula(), one.has_formula) << one.formula;
  }
}

TEST_F(ContentsTest, ACellOfAnArrayFormulaHasTheArraysFormula) {
  Put("A1", "=B1:B2*2");
  Put("A2", 1);
  Sheet().arrays.push_back({{1, 1, 2, 1}});
  EXPECT_EQ(Formula("A2"), "=B1:B2*2");
  EXPECT_TRUE(Range("A2")->HasFormula());
  EXPECT_THROW(Range("A2")->ClearContents(), HostError);
  EXPECT_THROW(Range("A2")->SetFormula("=1"), HostError);
  Range("A1:A2")->ClearContents();
  EXPECT_FALSE(Range("A2")->HasFormula());
}

TEST_F(ContentsTest, APutFormulaIsAdjustedToEachCell) {
  Put("A1", 1);
  Put("A2", 2);
  Range("B1:C2")->SetFormula("=$A1*10");
  EXPECT_EQ(Formula("C2"), "=$A2*10");
  EXPECT_THAT(Numbers("B1:C2"), ElementsAre(10, 10, 20, 20));
  Range("B1:C2")->SetValue(Value("=$A1*100"));
  EXPECT_THAT(Numbers("B1:C2"), ElementsAre(100, 100, 200, 200));
  Range("B1:C1")->SetFormula("7.5");
  EXPECT_EQ(Get("C1"), Value(7.5));
  Sheet().cells.SetStyle({5, 5}, 1);
  Range("E5")->SetFormula("=1+1");
  EXPECT_EQ(Get("E5"), Value("=1+1"));
  Range("C2")->SetFormula("");
  EXPECT_TRUE(Get("C2").IsEmpty());
}

// Excel would not open a file with such a formula.
TEST_F(ContentsTest, ATextThatIsNoFormulaIsRefused) {
  Put("C4", 8);
  for (const char* text : {"=SUM(", "=1+", "=\"a", "=SUM(A1;A2)", "=A1)"}) {
    EXPECT_THROW(Put("C4", text), HostError) << text;
    EXPECT_THROW(Range("C4")->SetFormula(text), HostError) << text;
  }
  EXPECT_EQ(Get("C4"), Value(8));
  // What can't be calculated here is a formula all the same.
  for (const char* text : {"=LAMBDA(x,x+1)(A1)", "=A1#", "=no.such(A1)", "=Costs[x]"}) {
    Put("C4", text);
    EXPECT_EQ(Formula("C4"), text);
  }
}

TEST_F(ContentsTest, EmptyingKeepsTheFormat) {
  Put("A1", 1);
  Put("A2", "=A1+1");
  Put("B1", "=A2");
  Sheet().cells.SetStyle({1, 1}, 2);
  Range("A1:A2")->ClearContents();
  EXPECT_TRUE(Get("A1").IsEmpty());
  EXPECT_FALSE(Range("A2")->HasFormula());
  EXPECT_EQ(Get("B1"), Value(0));
  EXPECT_EQ(Range("A1")->Interior()->ColorIndex(), 15);
  Range("A:A")->Copy();
  Range("D5")->ClearContents();  // as every edit, ends the copy
  EXPECT_THROW(
      Range("B:B")->PasteSpecial(XlPasteType::kAll, XlPasteSpecialOperation::kNone, false, false),
      HostError);
}

TEST_F(ContentsTest, APasteRepeatsTheCopyWhereTheTargetIsAMultipleOfIt) {
  const struct {
    const char* from;
    const char* to;
    std::vector<double> found;  // F1:I3
  } cases[] = {
      {"A1:B1", "F1", {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"A1", "F1:G2", {1, 1, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0}},
      {"A1:B1", "F1:I2", {1, 2, 1, 2, 1, 2, 1, 2, 0, 0, 0, 0}},
      // In one direction smaller, in the other a multiple.
      {"A1:A3", "F1:G1", {1, 1, 0, 0, 3, 3, 0, 0, 5, 5, 0, 0}},
      // Smaller than the copy: all of it is pasted all the same.
      {"A1:B3", "F1:G2", {1, 2, 0, 0, 3, 4, 0, 0, 5, 6, 0, 0}},
      // Larger and no multiple: once.
      {"A1:B1", "F1:H2", {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
  };
  for (const auto& one : cases) {
    for (int i = 0; i < 6; ++i) Range("A1")->Cells(1 + i / 2, 1 + i % 2)->SetValue(i + 1);
    Range("F1:I3")->ClearContents();
    Paste(one.from, one.to, XlPasteType::kValues);
    EXPECT_EQ(Numbers("F1:I3"), one.found) << one.from << " at " << one.to;
  }
  EXPECT_THROW(Paste("A1:B1", "XFD1"), HostError);
}

TEST_F(ContentsTest, AnOverlappingPasteReadsEveryCellBeforeItIsOverwritten) {
  for (int column = 1; column <= 5; ++column) Range("A1")->Cells(1, column)->SetValue(column);
  Paste("A1:D1", "B1");
  EXPECT_THAT(Numbers("A1:E1"), ElementsAre(1, 1, 2, 3, 4));
  Paste("C1:E1", "B1");
  EXPECT_THAT(Numbers("A1:E1"), ElementsAre(1, 2, 3, 4, 4));
  for (int row = 1; row <= 3; ++row) Range("H1")->Cells(row, 1)->SetValue(row);
  Paste("H1:H3", "H2");
  EXPECT_THAT(Numbers("H1:H4"), ElementsAre(1, 1, 2, 3));
}

TEST_F(ContentsTest, FormulasAloneLeaveFormatsAndComments) {
  Put("A1", "=B1");
  Sheet().cells.SetStyle({1, 1}, 2);
  Range("A1")->AddComment()->Text("note");
  Paste("A1", "A3");
  EXPECT_EQ(Formula("A3"), "=B3");
  EXPECT_EQ(Range("A3")->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_NO_THROW(Range("A3")->AddComment());
}

// Where comments are is remembered between pastes: every edit of comments counts.
TEST_F(ContentsTest, OrdinaryPastesBringTheCommentsThatAreThereNow) {
  auto paste = [&](std::string_view from, std::string_view to) {
    Range(from)->Copy();
    Range(to)->Select();
    session_->application()->ActiveSheet()->Paste();
  };
  paste("A1", "B1");
  Range("A1")->AddComment()->Text("note");
  paste("A1", "B1");
  EXPECT_THROW(Range("B1")->AddComment(), HostError) << "it has one";
  paste("C1", "B1");
  EXPECT_NO_THROW(Range("B1")->AddComment());
  Range("A:A")->Insert(host::XlInsertShiftDirection::kToRight);
  paste("C1", "E1");  // B1's comment stands in C1 now
  EXPECT_THROW(Range("E1")->AddComment(), HostError);
}

TEST_F(ContentsTest, OrdinaryPastesBringTheValidationsThatAreThereNow) {
  SheetMarkup& markup = session_->file().markup(0);
  auto areas = [&] {
    const std::string& text = markup.Find("dataValidations")->text;
    const std::size_t at = text.find("sqref=\"") + 7;
    return text.substr(at, text.find('"', at) - at);
  };
  Paste("A1", "B1", XlPasteType::kAll);
  markup.FindOrInsert("dataValidations").text =
      "<dataValidations count=\"1\"><dataValidation type=\"whole\" sqref=\"A1 A9\"><formula1>1"
      "</formula1></dataValidation></dataValidations>";
  Paste("A1", "C1", XlPasteType::kAll);
  EXPECT_EQ(areas(), "A1 C1 A9");
  Paste("A1", "D1");  // formulas alone
  Paste("B1", "C1", XlPasteType::kAll);
  EXPECT_EQ(areas(), "A1 A9");
}

TEST_F(ContentsTest, PartOfAMergedAreaIsNeitherEmptiedNorPastedOver) {
  session_->file().markup(0).FindOrInsert("mergeCells").text =
      "<mergeCells count=\"1\"><mergeCell ref=\"B2:C2\"/></mergeCells>";
  Put("B2", 1);
  EXPECT_THROW(Range("B2")->ClearContents(), HostError);
  EXPECT_THROW(Paste("A1", "C2"), HostError);
  Range("B2:C2")->ClearContents();
  EXPECT_TRUE(Get("B2").IsEmpty());
}

}  // namespace
}  // namespace vantora::embedded
