// Shifting the history years, and copying the current year into the prior one.
#include <gmock/gmock.h>

#include "operations/year_end_fixture.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::YearEndTest;

class ShiftHistory : public YearEndTest {};
class CopyCurrentYear : public YearEndTest {};

TEST_F(ShiftHistory, MovesColumnsKToNOneToTheLeft) {
  model.Fill("Data!L3");
  YearEnd({"OK"}).ShiftHistory();
  EXPECT_EQ(Confirmed(), "This will shift all five history years.");
  EXPECT_THAT(model.Get("Data!J3", 6),
              ElementsAre(Value(12), Value(13), Value(14), Value(15), Value(15), Value(30)));
  EXPECT_EQ(model.Formula("Data!K4"), "J3+1");
  EXPECT_EQ(model.Formula("Data!L4"), "");
  EXPECT_EQ(model.Get("Data!K4"), Value(13));
  EXPECT_TRUE(model.IsFilled("Data!K3"));
  EXPECT_FALSE(model.IsFilled("Data!L3"));
  EXPECT_THAT(model.Get("Plant!J5", 5),
              ElementsAre(Value(22), Value(23), Value(24), Value(25), Value(25)));
  EXPECT_THAT(model.Get("Cover!J3", 2), ElementsAre(Value(1), Value(2)));
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_TRUE(ScreenUpdating());
}

TEST_F(ShiftHistory, ReturnsToAChartSheet) {
  model.Activate("Cover");
  model.TurnIntoChartSheet("Cover");
  YearEnd({"OK"}).ShiftHistory();
  EXPECT_EQ(model.Get("Data!J3"), Value(12));
  EXPECT_EQ(model.ActiveSheet(), "Cover");
}

TEST_F(ShiftHistory, EmptiesCellsOfColumnJThatShowValueErrors) {
  model.Put("Data!K5", {CellError::kValue});
  model.Put("Data!K6", {CellError::kRef});
  model.Put("Data!K7", {"=\"text\"+1"});
  model.Put("Data!L8", {CellError::kValue});
  model.Put("Data!B9", {"last used row"});
  YearEnd({"OK"}).ShiftHistory();
  EXPECT_EQ(model.Get("Data!J5"), Value());
  EXPECT_EQ(model.Get("Data!J6"), Value(CellError::kRef));
  EXPECT_EQ(model.Get("Data!J7"), Value());
  EXPECT_EQ(model.Formula("Data!J7"), "");
  EXPECT_EQ(model.Get("Data!K8"), Value(CellError::kValue));
}

TEST_F(CopyCurrentYear, ReplacesInputCellsOfColumnNByValues) {
  model.Put("Data!N1", {"head", "now"});
  model.Put("Data!N2", {"=M3", 7});
  model.Fill("Data!N4");
  model.Put("Data!N6", {"gone"});
  model.Put("Data!O7", {CellError::kNotAvailable});
  model.Put("Data!O8", {true});
  model.Hide("Plant");  // no sheet is activated
  YearEnd({"OK"}).CopyCurrentYear();
  EXPECT_EQ(Confirmed(),
            "This will copy current year input cells (column O) to prior year (column N).");
  EXPECT_THAT(model.Changes(),
              ElementsAre("Data!N2: =M3 -> 7", "Data!N3: 15 -> 30", "Data!N6: gone -> ",
                          "Data!N7:  -> #N/A", "Data!N8:  -> TRUE", "Plant!N5: 25 -> 26"));
  EXPECT_EQ(model.Get("Data!O3"), Value(60));
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_TRUE(ScreenUpdating());
}

TEST_F(CopyCurrentYear, EndsAtTheFirstProtectedSheet) {
  model.Protect("Plant");
  model.Activate("Planning");
  EXPECT_THROW(YearEnd({"OK"}).CopyCurrentYear(), HostError);
  EXPECT_EQ(model.Get("Data!N3"), Value(30));
  EXPECT_EQ(model.Get("Plant!N5"), Value(25));
  EXPECT_FALSE(ScreenUpdating());
}

TEST_F(CopyCurrentYear, AndShiftCancelledTouchNothing) {
  YearEnd({"Cancel", "Cancel"}).CopyCurrentYear();
  year_end->ShiftHistory();
  EXPECT_THAT(model.Changes(), IsEmpty());
  EXPECT_TRUE(ScreenUpdating());
}

TEST_F(YearEndTest, NotInitialisedDoesNothing) {
  testing::FakeServices silent;  // any question would throw
  testing::YearEndClient object(silent.services, nullptr);
  object.SaveHistoryYear();
  object.SaveCurrentYear();
  object.SaveLastYear();
  object.ShiftHistory();
  object.CopyCurrentYear();
  EXPECT_TRUE(silent.user_interface.message_boxes().empty());
}

}  // namespace
}  // namespace vantora
