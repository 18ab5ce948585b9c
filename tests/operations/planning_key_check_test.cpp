// The planning-key check.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TestModel;

class PlanningKeyCheck : public ::testing::Test {
 protected:
  PlanningKeyCheck() {
    model.Put("Ref!A1", {"X5", "n", "k", "s", "c", "e"});
    model.Put("Ref!A40", {"the used range ends here"});
    model.Put("Plan!A1", {"L"});
    model.Put("Costs!A1", {"L"});
    model.HaveSortButtons();
  }

  void Down(const std::string& sheet, const std::string& column, int row,
            const std::vector<Value>& values) {
    for (const Value& value : values) {
      model.Put(sheet + "!" + column + std::to_string(row++), {value});
    }
  }
  // The filled cells of a list.
  std::vector<std::string> List(char column) {
    std::vector<std::string> lines;
    for (int row = 5;; ++row) {
      const Value value = model.Get("Ref!" + std::string(1, column) + std::to_string(row));
      if (value.IsEmpty()) return lines;
      lines.push_back(value.IsNumber() ? std::to_string(static_cast<int>(value.AsNumber()))
                                       : value.AsText());
    }
  }
  void Check() {
    testing::DevelopmentModeClient(fake.services, model.application()).CheckPlanningKeys();
  }
  const std::vector<ui::ShownMessageBox>& boxes() { return fake.user_interface.message_boxes(); }

  TestModel model{{"Plan", "Uses", "Costs", "Ref"}};
  FakeServices fake{{"OK", "OK"}};
};

TEST_F(PlanningKeyCheck, TellsOfDuplicateMissingAndUnusedKeys) {
  Down("Plan", "I", 3, {" planning KEY ", "A1", Value(), "B1", "a1", "C1", 7});
  Down("Costs", "I", 2, {"Planning key", "D1", "C1"});
  Down("Uses", "C", 4, {"Planning key", "A1", "X9", " d1 ", "X9"});
  Down("Uses", "Z", 2, {"Planning key", "'7", "Y8"});
  Check();
  EXPECT_THAT(List('F'), ElementsAre("Plan Sheet Discrepancies: ",  //
                                     "Duplicate keys: A1, C1",      //
                                     "unused key B1",               //
                                     "unused key C1",               //
                                     "Uses Sheet Discrepancies: ",  //
                                     "Keys used on Uses Sheet but not in model: ",
                                     "missing key X9 used on row 6",  //
                                     "missing key X9 used on row 8",  //
                                     "missing key Y8 used on row 4",  //
                                     "Costs Sheet Discrepancies: ",   //
                                     "Duplicate keys: C1"));
  ASSERT_THAT(boxes(), SizeIs(1));
  EXPECT_EQ(boxes()[0].text, "Please see Reference Sheet for list of Planning Key discrepancies");
  EXPECT_EQ(boxes()[0].title, "Vantora");
  EXPECT_EQ(boxes()[0].style, kInformation);
}

TEST_F(PlanningKeyCheck, ListsEveryKeyWithSheetAndColumnByKey) {
  Down("Plan", "I", 3, {"Planning key", "B1", "A1"});
  Down("Uses", "C", 4, {"Planning key", "A1", "b1"});
  Down("Ref", "C", 5, {"old", "old", "old", "old", "old", "old"});
  Down("Ref", "F", 5, {"old", "old"});
  Check();
  EXPECT_THAT(List('C'), ElementsAre("A1", "A1", "B1", "b1"));
  EXPECT_THAT(List('D'), ElementsAre("Plan", "Uses", "Plan", "Uses"));
  EXPECT_THAT(List('E'), ElementsAre("9", "3", "9", "3"));
  EXPECT_THAT(List('F'), IsEmpty());
  EXPECT_THAT(boxes(), IsEmpty());

  Check();  // what it wrote is no key in use
  EXPECT_THAT(List('C'), SizeIs(4));
}

TEST_F(PlanningKeyCheck, KeysOutsideTheKeyColumnOfAnLSheetAreInUse) {
  Down("Plan", "I", 3, {"Planning key", "A1"});
  Down("Plan", "K", 3, {"Planning key", "A1", "B1"});
  Down("Plan", "L", 3, {"A2", CellError::kRef});  // no heading above
  Check();
  EXPECT_THAT(List('F'), ElementsAre("Plan Sheet Discrepancies: ",
                                     "Keys used on Plan Sheet but not in model: ",
                                     "missing key B1 used on row 5"));
}

TEST_F(PlanningKeyCheck, KeysThatFillTheUsedRangeAreInOrderAllTheSame) {
  std::vector<Value> keys = {"Planning key"};
  for (int key = 60; key > 10; --key) keys.push_back("K" + std::to_string(key));
  Down("Plan", "I", 3, keys);
  Down("Uses", "I", 3, keys);
  Check();
  EXPECT_THAT(List('C'), SizeIs(100));
  EXPECT_EQ(List('C').front(), "K11");
  EXPECT_EQ(List('C').back(), "K60");
}

TEST_F(PlanningKeyCheck, NeedsBothLists) {
  Down("Uses", "C", 4, {"Planning key", "A1"});
  model.Put("Ref!F1", {""});
  model.RecordChanges();
  Check();
  EXPECT_THAT(model.Changes(), IsEmpty());
  EXPECT_THAT(boxes(), IsEmpty());
}

}  // namespace
}  // namespace vantora
