// Manual calculation: what formulas read meanwhile, and what the file says afterwards.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

using host::XlCalculation;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

class CalculationModeTest : public ::testing::Test {
 protected:
  CalculationModeTest() : session_(Session::Create({"Data"})) {
    Put("A1", 1);
    Put("B1", "=A1+1");
    Put("C1", "=B1*10");
  }

  void Put(std::string_view cell, const Value& value) { session_->Range(cell)->SetValue(value); }
  Value Get(std::string_view cell) { return session_->Range(cell)->Value(); }
  void Calculate(XlCalculation mode) { session_->application()->SetCalculation(mode); }
  // <calcPr> of the workbook's part as saved; "" without one.
  std::string SavedMode() {
    const auto path = folder_ / "saved.xlsx";
    session_->Save(path);
    const std::string text = WorkbookFile::Open(path)->package().Read("xl/workbook.xml");
    const std::size_t at = text.find("<calcPr");
    return at == std::string::npos ? "" : text.substr(at, text.find('>', at) - at + 1);
  }
  void SetWorkbookPart(const std::string& calculation) {
    std::string text = session_->file().package().Read("xl/workbook.xml");
    if (std::size_t at = text.find("<calcPr"); at != std::string::npos) {
      text.erase(at, text.find('>', at) - at + 1);
    }
    text.insert(text.find("</workbook>"), calculation);
    session_->file().package().Write("xl/workbook.xml", text);
    const auto path = folder_ / "book.xlsx";
    session_->Save(path);
    session_ = Session::Open(path);
  }

  testing::TemporaryFolder folder_;
  std::unique_ptr<Session> session_;
};

TEST_F(CalculationModeTest, FormulasKeepTheirValuesWhileManual) {
  Calculate(XlCalculation::kManual);
  Put("A1", 5);
  EXPECT_EQ(Get("B1"), Value(2)) << "what was due before is calculated, what came after is not";
  EXPECT_EQ(Get("C1"), Value(20));
  Calculate(XlCalculation::kAutomatic);
  EXPECT_EQ(Get("C1"), Value(60));
  Put("A1", 6);
  EXPECT_EQ(Get("C1"), Value(70));
}

TEST_F(CalculationModeTest, AFormulaEnteredWhileManualIsCalculatedFromWhatTheOthersShow) {
  Calculate(XlCalculation::kManual);
  Put("A1", 5);
  Put("D1", "=C1+A1");
  session_->Range("E1:E2")->SetFormula("=$A$1");
  EXPECT_EQ(Get("D1"), Value(25));
  EXPECT_EQ(Get("E2"), Value(5));
  Calculate(XlCalculation::kAutomatic);
  EXPECT_EQ(Get("D1"), Value(65));
}

TEST_F(CalculationModeTest, APastedFormulaShowsTheCopiedValueUntilItIsCalculated) {
  Calculate(XlCalculation::kManual);
  session_->Range("B1")->Copy();
  session_->Range("B2")->PasteSpecial(XlPasteType::kFormulas, XlPasteSpecialOperation::kNone, false,
                                      false);
  EXPECT_EQ(Get("B2"), Value(2));
  session_->Range("B2")->Copy();
  session_->Range("B3")->PasteSpecial(XlPasteType::kValues, XlPasteSpecialOperation::kNone, false,
                                      false);
  Calculate(XlCalculation::kAutomatic);
  EXPECT_EQ(Get("B2"), Value(1));
  EXPECT_EQ(Get("B3"), Value(2));
}

TEST_F(CalculationModeTest, WhatWasNeverCalculatedIsWhenItGetsManual) {
  session_ = Session::Create({"Data"});
  SheetModel& sheet = *session_->file().model().sheets[0];
  const FormulaId formula =
      sheet.formulas.Intern(ParseFormula("1+2", {1, 1}, session_->file().model()));
  sheet.cells.Load({1, 1}, CellValue::Blank(), formula, 0);
  sheet.cells.SetFlag({1, 1}, kNeedsCalculation, true);
  Calculate(XlCalculation::kManual);
  EXPECT_EQ(Get("A1"), Value(3));
}

TEST_F(CalculationModeTest, IsStatedInTheFileOnceItWasSet) {
  const std::string untouched = SavedMode();
  EXPECT_THAT(untouched, ::testing::Not(::testing::HasSubstr("manual")));
  Calculate(XlCalculation::kManual);
  Put("A1", 5);
  EXPECT_THAT(SavedMode(), ::testing::HasSubstr("calcMode=\"manual\""));
  EXPECT_EQ(Get("C1"), Value(60)) << "saving calculates";
  Calculate(XlCalculation::kAutomatic);
  EXPECT_THAT(SavedMode(), ::testing::Not(::testing::HasSubstr("manual")));
}

TEST_F(CalculationModeTest, AManualWorkbookIsOpenedAndStaysSo) {
  SetWorkbookPart("<calcPr calcId=\"191029\" calcMode=\"manual\" iterate=\"1\"/>");
  Put("A1", 5);
  EXPECT_EQ(Get("C1"), Value(20));
  EXPECT_EQ(SavedMode(), "<calcPr calcId=\"191029\" calcMode=\"manual\" iterate=\"1\"/>");
  Calculate(XlCalculation::kAutomatic);
  EXPECT_EQ(SavedMode(), "<calcPr calcId=\"191029\" calcMode=\"auto\" iterate=\"1\"/>");
}

}  // namespace
}  // namespace vantora::embedded
