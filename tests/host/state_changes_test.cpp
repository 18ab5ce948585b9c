// What the list of changes tells of a workbook beside its cells.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/session.h"

namespace vantora::embedded {
namespace {

using ::testing::ElementsAreArray;

struct Edit {
  const char* name;
  std::function<void(Session&)> make;
  std::vector<std::string> lines;
};

void PrintTo(const Edit& edit, std::ostream* out) { *out << edit.name; }

class StateChanges : public ::testing::TestWithParam<Edit> {
 protected:
  // Two hidden rows, a protected sheet, a name.
  StateChanges() {
    host::WorksheetPtr data = session->Worksheet("Data");
    data->Range(1, 1, 2, 1)->SetRowsHidden(true);
    data->Cells(9, 9)->SetValue(1);
    session->Worksheet("R&D Costs")->Protect();
    Names().Add("old", "=Data!R1C3:R1C4");
    session->RecordChanges();
  }
  host::Names& Names() {
    names = session->application()->ActiveWorkbook()->Names();
    return *names;
  }

  std::unique_ptr<Session> session = Session::Create({"Data", "R&D Costs", "Plan"});
  host::NamesPtr names;
};

TEST_P(StateChanges, AreToldInPlainWords) {
  GetParam().make(*session);
  EXPECT_THAT(session->Changes().others, ElementsAreArray(GetParam().lines));
}

host::NamesPtr NamesOf(Session& session) {
  return session.application()->ActiveWorkbook()->Names();
}

INSTANTIATE_TEST_SUITE_P(
    Each, StateChanges,
    ::testing::Values(
        Edit{"Rows",
             [](Session& s) {
               s.Worksheet("Data")->Cells(1, 1)->SetRowsHidden(false);
               for (int row : {5, 6, 7, 20})
                 s.Worksheet("Plan")->Cells(row, 1)->SetRowsHidden(true);
             },
             {"rows hidden at Plan!5:7, Plan!20:20", "rows shown at Data!1:1"}},
        Edit{"HeightsAndOutlineLevels",
             [](Session& s) {
               host::WorksheetPtr plan = s.Worksheet("Plan");
               for (int row : {3, 4}) plan->Cells(row, 1)->SetRowHeight(30);
               plan->Cells(9, 1)->SetOutlineLevel(2);
               s.Worksheet("Data")->Cells(1, 1)->SetRowHeight(40);
               s.Worksheet("Data")->Cells(5, 1)->SetRowHeight(20);
               s.Worksheet("Data")->Cells(5, 1)->SetRowHeight(15);
             },
             {"rows shown at Data!1:1", "row heights changed at Data!1:1, Plan!3:4",
              "outline levels of rows changed at Plan!9:9"}},
        Edit{"ColumnWidthsAndFormats",
             [](Session& s) {
               host::WorksheetPtr data = s.Worksheet("Data");
               for (int column : {2, 3}) data->Columns(column)->SetColumnWidth(20);
               data->Columns(5)->SetColumnWidth(0);
               data->Columns(7)->Interior()->SetColorIndex(45);
               data->Columns(3)->Insert(host::XlInsertShiftDirection::kToRight);
             },
             {"columns hidden at Data!F:F", "column widths changed at Data!B:B",
              "column widths changed at Data!D:D", "formats of columns changed at Data!H:H"}},
        Edit{"ThereAndBack",
             [](Session& s) {
               s.Worksheet("Data")->Cells(1, 1)->SetRowsHidden(false);
               s.Worksheet("Data")->Cells(1, 1)->SetRowsHidden(true);
               s.Worksheet("Plan")->Activate();
               s.Worksheet("Data")->Activate();
             },
             {}},
        Edit{"SheetVisibility",
             [](Session& s) {
               s.Worksheet("Plan")->SetVisible(host::XlSheetVisibility::kVeryHidden);
             },
             {"sheet \"Plan\" hidden from the user"}},
        Edit{"Protection",
             [](Session& s) {
               s.Worksheet("R&D Costs")->Unprotect();
               s.Worksheet("Data")->Protect();
             },
             {"sheet \"Data\" protected", "sheet \"R&D Costs\" unprotected"}},
        Edit{"Formats",
             [](Session& s) {
               s.Worksheet("Data")->Range(2, 2, 4, 3)->Interior()->SetColorIndex(45);
               s.Worksheet("R&D Costs")->Unprotect();
               s.Worksheet("R&D Costs")->Cells(7, 1)->Font()->SetBold(true);
               s.Worksheet("R&D Costs")->Protect();
             },
             {"formats of 6 cells changed within Data!B2:C4", "format changed at 'R&D Costs'!A7"}},
        Edit{"FormatsOfAnInsertedColumnAreNew",
             [](Session& s) {
               s.Worksheet("Data")->Columns(2)->Insert(host::XlInsertShiftDirection::kToRight);
               s.Worksheet("Data")->Cells(3, 2)->Interior()->SetColorIndex(3);
             },
             {}},
        Edit{"Names",
             [](Session& s) {
               NamesOf(s)->Add("new", "=Plan!R7C1:R7C28");
               NamesOf(s)->Item("old")->Delete();
             },
             {"name \"new\" defined: =Plan!$A$7:$AB$7", "name \"old\" deleted"}},
        Edit{"NameDefinedAnew",
             [](Session& s) { NamesOf(s)->Add("Old", "=Plan!R7C1"); },
             {"name \"Old\" defined anew: =Plan!$A$7"}},
        Edit{"ANameThatFollowsAnInsertion",
             [](Session& s) {
               s.Worksheet("Data")->Columns(2)->Insert(host::XlInsertShiftDirection::kToRight);
             },
             {}},
        Edit{"PanesScrollingAndSelection",
             [](Session& s) {
               host::WindowPtr window = s.application()->ActiveWindow();
               s.Worksheet("Plan")->Activate();
               s.Worksheet("Plan")->Cells(4, 5)->Select();
               window->SetFreezePanes(true);
               window->SetScrollColumn(14);
             },
             {"sheet \"Plan\" activated", "sheet \"Plan\" frozen at E4",
              "sheet \"Plan\" scrolled to N4", "selected on sheet \"Plan\": E4"}}),
    [](const auto& info) { return info.param.name; });

TEST(ManyChanges, AreCut) {
  auto session = Session::Create({"Data"});
  session->RecordChanges();
  for (int row = 1; row <= 30; ++row) {
    NamesOf(*session)->Add("name_" + std::to_string(row), "=Data!R" + std::to_string(row) + "C1");
  }
  const std::vector<std::string> lines = session->Changes().others;
  ASSERT_EQ(lines.size(), 21u);
  EXPECT_EQ(lines.back(), "... and 10 more names defined");
}

}  // namespace
}  // namespace vantora::embedded
