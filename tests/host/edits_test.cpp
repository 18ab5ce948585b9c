// What a macro sees when it works on a workbook of the embedded host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session.h"

namespace vantora::embedded {
namespace {

using host::XlCutCopyMode;
using host::XlInsertShiftDirection;
using host::XlPasteSpecialOperation;
using host::XlPasteType;
using testing::HasSubstr;

class EditsTest : public testing::Test {
 protected:
  EditsTest() : session_(Session::Create({"Data", "Owner's Equity", "Hidden"})) {
    Model().sheets[2]->visibility = Visibility::kHidden;
    // Format 1: a fill of palette index 15; format 2: text; format 3: an unlocked cell.
    Model().styles.formats.resize(4);
    Model().styles.formats[1].fill_color_index = 15;
    Model().styles.formats[2].text_format = true;
    Model().styles.formats[3].locked = false;
  }

  WorkbookModel& Model() { return session_->file().model(); }
  void Put(std::string_view cell, const Value& value) { session_->Range(cell)->SetValue(value); }
  Value Get(std::string_view cell) { return session_->Range(cell)->Value(); }
  void Style(int sheet, CellAddress cell, StyleId style) {
    Model().sheets[sheet]->cells.SetStyle(cell, style);
  }
  std::string FormulaIn(int sheet, CellAddress cell) {
    SheetModel& model = *Model().sheets[sheet];
    FormulaId formula = model.cells.Get(cell).formula;
    return formula == 0 ? "" : FormulaText(model.formulas[formula], cell, Model());
  }
  void Insert(std::string_view column) {
    session_->Range(column)->Insert(XlInsertShiftDirection::kToRight);
  }
  // Copies a column and pastes it on another of the active sheet.
  void CopyColumn(int from, int to) {
    auto sheet = session_->application()->ActiveSheet();
    sheet->Columns(from)->Copy();
    sheet->Columns(to)->Select();
    sheet->Paste();
  }
  // The text of the HostError that the call ends with; "" when it ends well.
  template <typename Call>
  std::string Refusal(Call&& call) {
    try {
      call();
    } catch (const HostError& error) {
      EXPECT_NE(error.number(), 0);
      return error.description();
    }
    return "";
  }

  std::unique_ptr<Session> session_;
};

TEST_F(EditsTest, APutReadsTextAsItWouldBeTyped) {
  Style(0, {10, 1}, 2);
  const struct {
    const char* cell;
    Value put;
    Value stored;
  } cases[] = {
      {"A1", "12", 12.0},        {"A2", " 1,234.5 ", 1234.5},
      {"A3", "12%", 0.12},       {"A4", "S14", "S14"},
      {"A5", "TRUE", true},      {"A6", "#N/A", CellError::kNotAvailable},
      {"A7", "", Value()},       {"A8", 0.1, 0.1},
      {"A9", "'12", "12"},       {"A10", "12", "12"},
      {"A11", "1-2", "1-2"},     {"A12", "=1+1", 2.0},
      {"A13", Value(), Value()}, {"A14", "=", "="},
      {"A15", false, false},
  };
  for (const auto& one : cases) {
    Put(one.cell, one.put);
    EXPECT_EQ(Get(one.cell), one.stored) << one.cell;
  }
}

TEST_F(EditsTest, AnEmptyTextRemovesTheFormulaAndKeepsTheFormat) {
  Put("B2", "=1/0");
  Style(0, {2, 2}, 1);
  EXPECT_EQ(Get("B2"), Value(CellError::kDiv0));
  Put("B2", "");
  EXPECT_TRUE(Get("B2").IsEmpty());
  EXPECT_EQ(FormulaIn(0, {2, 2}), "");
  EXPECT_EQ(session_->Range("B2")->Interior()->ColorIndex(), 15);
}

TEST_F(EditsTest, ValuesFollowEditsAcrossSheetsAndNames) {
  Model().names.push_back({"rate", -1, "Data!$A$1"});
  Put("Data!A1", 2.0);
  Put("'Owner''s Equity'!B1", "=Data!A1*rate+SUM(Data!A:A)");
  EXPECT_EQ(Get("'Owner''s Equity'!B1"), Value(6.0));
  Put("Data!A1", 3.0);
  EXPECT_EQ(Get("'Owner''s Equity'!B1"), Value(12.0));
  Put("Data!A7", 100.0);
  EXPECT_EQ(Get("'Owner''s Equity'!B1"), Value(112.0));
}

TEST_F(EditsTest, AStaleValueIsAnErrorAndNeverANumber) {
  Put("A1", 1.0);
  Put("A2", "=FUNCTION.OF.TOMORROW(A1)");
  Put("A3", "=A2+1");
  std::string refusal = Refusal([&] { Get("A3"); });
  EXPECT_THAT(refusal, HasSubstr("Data!A3"));
  EXPECT_THAT(refusal, HasSubstr("out of date"));
  auto uncalculated = session_->Calculate();
  ASSERT_EQ(uncalculated.size(), 2u);
  EXPECT_THAT(uncalculated[0].reason, HasSubstr("FUNCTION.OF.TOMORROW"));
}

TEST_F(EditsTest, UsedRangeCountsFormatsAndNeedNotStartInA1) {
  auto sheet = session_->Worksheet("data");
  EXPECT_EQ(sheet->UsedRange()->RowsCount(), 1);
  Put("C5", 1.0);
  Style(0, {9, 10}, 1);
  EXPECT_EQ(sheet->UsedRange()->Row(), 5);
  EXPECT_EQ(sheet->UsedRange()->Column(), 3);
  EXPECT_EQ(sheet->UsedRange()->RowsCount(), 5);
  EXPECT_EQ(sheet->UsedRange()->ColumnsCount(), 8);
}

TEST_F(EditsTest, InsertedColumnsAreFollowedOnEverySheet) {
  Model().names.push_back({"marker", -1, "Data!$C$1"});
  Put("Data!B1", 1.0);
  Put("Data!C1", 10.0);
  Put("Data!D1", "=B1+C1+$C$1+SUM(B1:C1)");
  Put("'Owner''s Equity'!A1", "=SUM(Data!B:C)+Data!C1");
  Insert("Data!C:C");
  EXPECT_EQ(FormulaIn(0, {1, 5}), "B1+D1+$D$1+SUM(B1:D1)");
  EXPECT_EQ(FormulaIn(1, {1, 1}), "SUM(Data!B:D)+Data!D1");
  EXPECT_EQ(Model().names[0].refers_to, "Data!$D$1");
  EXPECT_EQ(Get("'Owner''s Equity'!A1"), Value(21.0));
  Put("Data!C1", 5.0);  // within the grown areas
  EXPECT_EQ(Get("Data!E1"), Value(37.0));
  EXPECT_EQ(Get("'Owner''s Equity'!A1"), Value(26.0));
}

TEST_F(EditsTest, WhatExcelRefusesIsRefused) {
  Put("A1", 1.0);
  Model().sheets[0]->arrays.push_back({{3, 3, 3, 4}});
  EXPECT_THAT(Refusal([&] { Insert("D:D"); }), HasSubstr("part of an array"));
  EXPECT_THAT(Refusal([&] { Put("C3", 1.0); }), HasSubstr("part of an array"));
  Put("XFD1", 1.0);
  EXPECT_THAT(Refusal([&] { Insert("A:A"); }), HasSubstr("push non-empty cells off"));
  EXPECT_EQ(Get("XFD1"), Value(1.0));
  auto hidden = session_->Worksheet("Hidden");
  EXPECT_THAT(Refusal([&] { hidden->Activate(); }), HasSubstr("hidden"));
  EXPECT_THAT(Refusal([&] { hidden->Columns(1)->Select(); }), HasSubstr("not the active sheet"));
  EXPECT_THAT(Refusal([&] { session_->application()->Goto("marker"); }), HasSubstr("marker"));
  EXPECT_THAT(Refusal([&] { session_->application()->ActiveWorkbook()->Names()->Item("none"); }),
              HasSubstr("none"));
  EXPECT_THAT(Refusal([&] { session_->Worksheet("Data")->Cells(0, 1); }), HasSubstr("row 0"));
}

TEST_F(EditsTest, AProtectedSheetTakesEditsOfUnlockedCellsOnly) {
  Style(0, {1, 2}, 3);
  Model().sheets[0]->is_protected = true;
  Put("B1", 5.0);
  EXPECT_EQ(Get("B1"), Value(5.0));
  EXPECT_THAT(Refusal([&] { Put("A1", 1.0); }), HasSubstr("protected sheet"));
  EXPECT_THAT(Refusal([&] { Insert("A:A"); }), HasSubstr("protected sheet"));
  EXPECT_THAT(Refusal([&] { CopyColumn(2, 1); }), HasSubstr("protected sheet"));
  EXPECT_TRUE(Get("A1").IsEmpty());
}

TEST_F(EditsTest, AnOrdinaryPasteShiftsFormulasAndBringsFormats) {
  Put("B1", 2.0);
  Put("C1", "=B1*10+$B$1");
  Put("C2", "text");
  Put("D3", "=A3");
  Put("B5", "gone");
  Style(0, {1, 3}, 1);
  CopyColumn(3, 2);
  EXPECT_EQ(FormulaIn(0, {1, 2}), "A1*10+$B$1");
  EXPECT_EQ(Get("B2"), Value("text"));
  EXPECT_TRUE(Get("B5").IsEmpty());
  EXPECT_EQ(session_->Range("B1")->Interior()->ColorIndex(), 15);
  CopyColumn(4, 1);
  EXPECT_EQ(FormulaIn(0, {3, 1}), "#REF!");
  EXPECT_EQ(Get("A3"), Value(CellError::kRef));
}

TEST_F(EditsTest, PasteSpecialBringsValuesOrFormats) {
  Put("A1", 2.0);
  Put("B1", "=A1*3");
  Put("B2", CellError::kDiv0);
  Style(0, {1, 2}, 1);
  auto sheet = session_->Worksheet("Data");
  auto paste = [&](int column, XlPasteType type) {
    sheet->Columns(column)->PasteSpecial(type, XlPasteSpecialOperation::kNone, false, false);
  };
  sheet->Columns(2)->Copy();
  paste(5, XlPasteType::kValues);
  EXPECT_EQ(Get("E1"), Value(6.0));
  EXPECT_EQ(FormulaIn(0, {1, 5}), "");
  EXPECT_EQ(Get("E2"), Value(CellError::kDiv0));
  EXPECT_EQ(session_->Range("E1")->Interior()->ColorIndex(), host::kColorIndexNone);
  paste(5, XlPasteType::kFormats);
  EXPECT_EQ(session_->Range("E1")->Interior()->ColorIndex(), 15);
  EXPECT_EQ(Get("E1"), Value(6.0));
  sheet->Columns(5)->ClearFormats();
  EXPECT_EQ(session_->Range("E1")->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_EQ(Get("E1"), Value(6.0));
}

TEST_F(EditsTest, PuttingAnyCutCopyModeEndsTheCopy) {
  auto app = session_->application();
  for (auto mode : {XlCutCopyMode::kCopy, XlCutCopyMode::kNone}) {
    session_->Range("A:A")->Copy();
    app->SetCutCopyMode(mode);
    EXPECT_THAT(Refusal([&] {
                  session_->Range("B:B")->PasteSpecial(
                      XlPasteType::kValues, XlPasteSpecialOperation::kNone, false, false);
                }),
                HasSubstr("nothing has been copied"));
  }
}

TEST_F(EditsTest, NamesAreFoundBySheetAndSelectedByGoto) {
  Model().names.push_back({"years", -1, "'Owner''s Equity'!$J$4:$N$4"});
  Model().names.push_back({"years", 0, "Data!$A$1"});
  Model().names.push_back({"constant", -1, "0.5"});
  auto app = session_->application();
  auto names = app->ActiveWorkbook()->Names();
  EXPECT_EQ(names->Item("YEARS")->RefersToRange()->Column(), 1);  // the active sheet's own
  session_->Worksheet("Owner's Equity")->Activate();
  EXPECT_EQ(names->Item("years")->RefersToRange()->ColumnsCount(), 5);
  session_->Worksheet("Data")->Activate();
  Model().names.erase(Model().names.begin() + 1);
  app->Goto("years");
  EXPECT_EQ(app->ActiveSheet()->Name(), "Owner's Equity");
  EXPECT_EQ(app->Selection()->Column(), 10);
  EXPECT_THAT(Refusal([&] { names->Item("constant")->RefersToRange(); }), HasSubstr("constant"));
}

TEST_F(EditsTest, AddsOneHiddenCommentToACell) {
  auto cell = session_->Range("C2");
  auto comment = cell->AddComment();
  comment->SetVisible(false);
  comment->Text("Board version <1> & more");
  EXPECT_THAT(Refusal([&] { cell->AddComment(); }), HasSubstr("already has a comment"));
}

TEST_F(EditsTest, ListsWhatChangedButNotWhatOnlyMoved) {
  Put("A1", 1.0);
  Put("D1", 4.0);
  Put("E1", "=A1+D1");
  session_->RecordChanges();
  Insert("C:C");
  Put("A1", 2.0);
  Put("C1", "new");
  session_->Range("C2")->AddComment();
  ChangeList changes = session_->Changes();
  ASSERT_EQ(changes.inserted.size(), 1u);
  EXPECT_EQ(changes.inserted[0].column, 3);
  ASSERT_EQ(changes.cells.size(), 2u);
  EXPECT_EQ(changes.cells[0].before, "1");
  EXPECT_EQ(changes.cells[0].after, "2");
  EXPECT_EQ(changes.cells[1].cell, (CellAddress{1, 3}));
  EXPECT_EQ(changes.cells[1].after, "new");
  EXPECT_THAT(changes.others,
              testing::ElementsAre("comment added at Data!C2", "1 formulas have new results"));
}

}  // namespace
}  // namespace vantora::embedded
