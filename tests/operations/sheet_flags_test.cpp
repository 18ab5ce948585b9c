// The flags in cell A1 that mark the model's sheets.
#include <gtest/gtest.h>

#include "core/common.h"
#include "operations/test_model.h"

namespace vantora {
namespace {

using testing::TestModel;

TEST(SheetFlag, OccursAnywhereInTheTextOfA1) {
  struct Case {
    Value a1;
    const char* flag;
    bool carried;
  } const cases[] = {
      {"S", "s", true},         {"s", "S", true},
      {"XS", "s", true},        {"Index", "x", true},
      {"M", "s", false},        {Value(), "s", false},
      {Value(true), "u", true},  // reads True
      {Value(2015), "2", true}, {CellError::kValue, "r", false},
  };
  for (const Case& c : cases) {
    TestModel model({"Data"});
    model.Put("Data!A1", {c.a1});
    EXPECT_EQ(SheetHasFlag(model.Sheet("Data"), c.flag), c.carried) << c.flag;
  }
  EXPECT_FALSE(SheetHasFlag(nullptr, "s"));
}

TEST(FlagNumber, IsReadBehindTheFirstFlagAndBounded) {
  struct Case {
    Value a1;
    int number;
  } const cases[] = {
      {"X", 14},         {"x25", 25},   {"X 20", 20},    {"X6000", 14},
      {"X-3", 14},       {"X0", 14},    {"X5000", 5000}, {"X5001", 14},
      {"X5000.5", 5000},  // half to even
      {"X0.5", 14},      {"X1.5", 2},   {"X0.51", 1},    {"S3X7", 7},
      {"X7X9", 7},       {"XS8", 14},   {"S25", 14},     {"X12 rows", 12},
      {"X1e2", 100},     {"X1e99", 14}, {Value(), 14},   {CellError::kNotAvailable, 14},
  };
  for (const Case& c : cases) {
    TestModel model({"Reference"});
    model.Put("Reference!A1", {c.a1});
    EXPECT_EQ(FlagNumber(model.Sheet("Reference"), "X", 14), c.number)
        << (c.a1.IsText() ? c.a1.AsText() : "no text");
  }
  TestModel model({"Menu"});
  model.Put("Menu!A1", {"M3"});
  EXPECT_EQ(FlagNumber(model.Sheet("Menu"), "m"), 3);
  EXPECT_EQ(FlagNumber(model.Sheet("Menu"), "s"), 0);
}

TEST(FlaggedSheet, IsTheActiveOneBeforeTheFirstInTabOrder) {
  TestModel model({"First", "Second", "Third"});
  auto found = [&](std::string_view flag) {
    host::WorksheetPtr sheet = FindFlaggedSheet(*model.application(), flag);
    return sheet ? sheet->Name() : "none";
  };
  EXPECT_EQ(found("x"), "none");
  model.Put("Second!A1", {"X"});
  model.Put("Third!A1", {"x14"});
  EXPECT_EQ(found("x"), "Second");
  model.Activate("Third");
  EXPECT_EQ(found("x"), "Third");
  model.Hide("Second");
  model.Activate("First");
  EXPECT_EQ(found("x"), "Second");  // hidden sheets count
}

}  // namespace
}  // namespace vantora
