// Distributing comparison data onto the ratio rows.
#include <gmock/gmock.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::TestModel;

// Ratios has two ratios (keys 7 and 9, rows 3 and 6) and two blocks of comparison data.
class Ratios : public ::testing::Test {
 protected:
  Ratios() {
    model.Put("Ratios!A1", {"G"});
    model.Put("Ratios!E2", {1});
    model.Put("Ratios!A3", {7});
    model.Put("Ratios!A6", {"9"});
    model.Put("Ratios!A7", {"heading"});
    model.Put("Ratios!E10", {99});
    model.Put("Ratios!E12", {100});
    model.Put("Ratios!I13", {7, 1.5, 2, 3, 4, 5, 6});
    model.Put("Ratios!I14", {9, Value(), 22, Value(), 44, CellError::kNotAvailable});
    model.Put("Ratios!E15", {191});
    model.Put("Ratios!E16", {201});
    model.Put("Ratios!I17", {"7", "n/a"});
    model.Put("Ratios!E18", {299});
  }
  void Run(int sheets = 1) {
    fake = std::make_unique<testing::FakeServices>(std::vector<std::string>(sheets, "OK"));
    testing::RatiosCompDataSetClient object(fake->services, model.application());
    object.RatiosCompDataSet();
  }
  int ErrorOfRun() {
    try {
      Run();
    } catch (const HostError& error) {
      EXPECT_FALSE(model.application()->ScreenUpdating());
      return error.number();
    }
    return 0;
  }

  TestModel model{{"Cover", "Ratios", "Other"}};
  std::unique_ptr<testing::FakeServices> fake;
};

TEST_F(Ratios, FillTheRowsBelowEachRatioFromItsBlocks) {
  model.Put("Ratios!J7", {"old"});
  model.application()->ActiveSheet()->Range(2, 2, 3, 3)->Select();
  Run();
  EXPECT_THAT(model.Get("Ratios!J4", 7),
              ElementsAre(Value(1.5), Value(2), Value(3), Value(4), Value(5), Value(6), Value()));
  // An empty cell repeats what stands left of it; the first one empties.
  EXPECT_THAT(model.Get("Ratios!J7", 6),
              ElementsAre(Value(), Value(22), Value(22), Value(44), Value(CellError::kNotAvailable),
                          Value(CellError::kNotAvailable)));
  EXPECT_THAT(model.Get("Ratios!J5", 2), ElementsAre(Value("n/a"), Value("n/a")));
  EXPECT_EQ(model.Get("Ratios!P4"), Value());
  const auto& boxes = fake->user_interface.message_boxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].text, "Ratios Sheet has been updated with 2 comparison data ranges.");
  EXPECT_EQ(boxes[0].style, kOkOnly);
  EXPECT_EQ(boxes[0].title, "Orvanemcro1");
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_EQ(model.application()->Selection()->RowsCount(), 2);
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(Ratios, AreMappedFromTheRowOfCode1ToAboveTheRowOfCode99) {
  model.Put("Ratios!A3", {Value()});
  model.Put("Ratios!A1", {"G"});
  model.Put("Ratios!A2", {7});
  model.Put("Ratios!A10", {9});
  Run();
  EXPECT_EQ(model.Get("Ratios!J3"), Value(1.5));
  EXPECT_EQ(model.Get("Ratios!J11"), Value());
  EXPECT_EQ(model.Get("Ratios!K7"), Value(22));
}

TEST_F(Ratios, TakeTheLastRowOfAKeyAndSkipUnknownKeys) {
  model.Put("Ratios!A8", {7});
  model.Put("Ratios!I14", {8, "unknown"});
  model.Put("Ratios!I17", {"text", "no key"});
  Run();
  EXPECT_EQ(model.Get("Ratios!J4"), Value());
  EXPECT_EQ(model.Get("Ratios!J9"), Value(1.5));
  EXPECT_EQ(model.Get("Ratios!J10"), Value());
}

TEST_F(Ratios, TellTheHighestBlockNumber) {
  model.Put("Ratios!E16", {302});  // neither a start nor an end
  model.Put("Ratios!E18", {Value()});
  model.Put("Ratios!E17", {200});  // a start without an end copies nothing
  model.Put("Ratios!E19", {300});
  model.Put("Ratios!I18", {7, "open block"});
  Run();
  EXPECT_EQ(model.Get("Ratios!J5"), Value());
  EXPECT_EQ(fake->user_interface.message_boxes().at(0).text,
            "Ratios Sheet has been updated with 3 comparison data ranges.");
}

// What a sheet does not define itself, it has from the sheets before it.
TEST_F(Ratios, CarryKeysAndBlocksOverToTheNextSheet) {
  model.Put("Other!A1", {"g"});
  model.Put("Other!E5", {200});  // its end is the other sheet's: row 17
  model.Put("Other!I9", {7, "seven"});
  model.Put("Other!I13", {9, "from block 1"});
  model.Put("Other!E20", {"text is no code"});
  Run(2);
  EXPECT_EQ(model.Get("Other!J5"), Value("seven"));
  EXPECT_EQ(model.Get("Other!J7"), Value("from block 1"));
  EXPECT_EQ(fake->user_interface.message_boxes().at(1).text,
            "Other Sheet has been updated with 2 comparison data ranges.");
}

TEST_F(Ratios, EndAtWhatNoSheetMayHave) {
  struct Case {
    const char* cell;
    Value value;
    int error;
  } const cases[] = {
      {"Ratios!E20", 1100, HostError::kSubscriptOutOfRange},
      {"Ratios!E20", 1091, 0},
      {"Ratios!E20", 40000, HostError::kOverflow},
      {"Ratios!E20", CellError::kRef, HostError::kTypeMismatch},
      {"Ratios!A4", 101, HostError::kSubscriptOutOfRange},
      {"Ratios!A4", 100, 0},
      {"Ratios!A4", -1, HostError::kSubscriptOutOfRange},
      {"Ratios!A4", 1e6, HostError::kOverflow},
      {"Ratios!A4", CellError::kRef, 0},
      {"Ratios!I14", 101, HostError::kSubscriptOutOfRange},
      {"Ratios!I14", 0, 0},
      {"Ratios!I14", -5, 0},
      {"Ratios!I14", true, 0},
  };
  for (const Case& c : cases) {
    const Value before = model.Get(c.cell);
    model.Put(c.cell, {c.value});
    // Block 10 stands alone in its case: blocks 3 to 9 have no rows, which the host refuses.
    const int expected = c.value == Value(1091) ? HostError::kApplicationDefined : c.error;
    EXPECT_EQ(ErrorOfRun(), expected) << c.cell << ", error " << c.error;
    model.Put(c.cell, {before});
  }
}

TEST_F(Ratios, NotInitialisedDoesNothing) {
  testing::FakeServices silent;
  testing::RatiosCompDataSetClient(silent.services, nullptr).RatiosCompDataSet();
  EXPECT_TRUE(silent.user_interface.message_boxes().empty());
}

}  // namespace
}  // namespace vantora
