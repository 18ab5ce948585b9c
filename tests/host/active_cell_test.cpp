#include <gtest/gtest.h>

#include "host/session.h"

namespace vantora::embedded {
namespace {

// Freezing shows which cell is active: what is above and left of it does not scroll.
std::string FrozenAt(Session& session) {
  auto window = session.application()->ActiveWindow();
  window->SetFreezePanes(true);
  window->SetScrollRow(1);
  window->SetScrollColumn(1);
  std::string cell = ToA1(CellAddress{window->ScrollRow(), window->ScrollColumn()});
  window->SetFreezePanes(false);
  return cell;
}

TEST(ActiveCell, MovesWithinTheSelectionOrBringsItsOwn) {
  auto session = Session::Create({"One", "Two"});
  auto selection = [&] {
    auto range = session->application()->Selection();
    return ToA1(CellAddress{range->Row(), range->Column()}) + " " +
           std::to_string(range->RowsCount()) + "x" + std::to_string(range->ColumnsCount());
  };
  session->Range("B2:D5")->Select();
  session->Range("C4")->Activate();
  EXPECT_EQ(selection(), "B2 4x3");
  EXPECT_EQ(FrozenAt(*session), "C4");
  session->Range("E6:F7")->Activate();
  EXPECT_EQ(selection(), "E6 2x2");
  EXPECT_EQ(FrozenAt(*session), "E6");
  EXPECT_THROW(session->Range("Two!A1")->Activate(), HostError);
  EXPECT_EQ(selection(), "E6 2x2");
}

}  // namespace
}  // namespace vantora::embedded
