// Moving projects by clicks on spin buttons.
#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TestModel;

constexpr int kYears = 11;      // O to Y
constexpr int kSaveCells = 10;  // AD to AM

// Plan holds the flag column C, the save cells AD to AM, inflation in rows 5 and 6, a spin button
// linked to D8 and the projects of its block in rows 9 to 12.
class PlanningSpinners : public ::testing::Test {
 protected:
  PlanningSpinners() {
    model.Put("Plan!C1", {"F"});
    model.Put("Plan!AD1", {"S"});
    model.Put("Plan!C5", {"X"});
    model.Put("Plan!O5", {1, 2, 2, 4, 2, 2, 2, 2, 2, 2, 2});
    model.Put("Plan!O6", {10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 10});
    model.Put("Plan!C9", {"s"});
    model.Put("Plan!C13", {"block end", 1});
    for (int row = 9; row <= 12; ++row) Fill(row);
    model.AddSpinner("Plan", "Spinner 1", "$D$8");
    model.Activate("Plan");
    model.SetCaller("Spinner 1");
  }

  // Years 15 to 25 and save cells 101 to 110.
  void Fill(int row) {
    for (int year = 0; year < kYears; ++year) {
      model.Sheet("Plan")->Cells(row, 15 + year)->SetValue(15 + year);
    }
    for (int cell = 0; cell < kSaveCells; ++cell) {
      model.Sheet("Plan")->Cells(row, 30 + cell)->SetValue(101 + cell);
    }
  }
  std::vector<Value> Years(int row) { return model.Get("Plan!O" + std::to_string(row), kYears); }
  std::vector<Value> Saved(int row) {
    return model.Get("Plan!AD" + std::to_string(row), kSaveCells);
  }
  void Click(const Value& value, const std::vector<std::string>& answers = {}) {
    model.Put("Plan!D8", {value});
    fake = std::make_unique<testing::FakeServices>(answers);
    testing::PlanningSpinnersClient object(fake->services, model.application());
    model.RecordChanges();
    object.SpinnerChange();
  }
  std::string Message(std::size_t n = 0) { return fake->user_interface.message_boxes().at(n).text; }

  TestModel model{{"Cover", "Plan"}};
  std::unique_ptr<testing::FakeServices> fake;
};

TEST_F(PlanningSpinners, AYearLaterParksTheYearThatFallsOffTheEnd) {
  Click(2);
  EXPECT_THAT(Years(9), ElementsAre(15, Value(), 16, 17, 18, 19, 20, 21, 22, 23, 24));
  EXPECT_THAT(Saved(9), ElementsAre(25, 101, 102, 103, 104, 105, 106, 107, 108, 109));
  EXPECT_THAT(Years(10), ElementsAre(15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25)) << "no letter";
  EXPECT_EQ(model.Get("Plan!D13"), Value(2));
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

// Nine save cells move on the way later and eight on the way back, so that the last two differ.
TEST_F(PlanningSpinners, AYearEarlierBringsItBack) {
  Click(2);
  Click(1);
  EXPECT_THAT(Years(9), ElementsAre(15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25));
  EXPECT_THAT(Saved(9), ElementsAre(101, 102, 103, 104, 105, 106, 107, 108, 108, Value()));
}

TEST_F(PlanningSpinners, CountsPosition0As1) {
  Click(0);
  EXPECT_THAT(model.Changes(), ElementsAre("Plan!D13: 1 -> 0"));
  Click(1);
  EXPECT_THAT(model.Changes(), ElementsAre("Plan!D13: 0 -> 1"));
  Click(1);
  EXPECT_THAT(model.Changes(), IsEmpty());
  Click(3);
  const std::vector<Value> at_3 = Years(9);
  Click(0);  // two years earlier, as to 1
  EXPECT_EQ(Years(9)[1], Value(16));
  EXPECT_EQ(model.Get("Plan!D13"), Value(0));
  Click(3);  // two years later, as from 1
  EXPECT_EQ(Years(9), at_3);
}

TEST_F(PlanningSpinners, InflatesTheAmountsThatMoved) {
  model.Put("Plan!C9", {"i"});
  model.Put("Plan!C10", {" C I2 "});
  model.Put("Plan!S9", {0, "text", "20", CellError::kNotAvailable, true});
  Click(2);
  EXPECT_THAT(Years(9), ElementsAre(15, Value(), 32, 17 * 4, 18 * 2, 0, "text", 40,
                                    CellError::kNotAvailable, true, 24 * 2));
  EXPECT_THAT(Years(10), ElementsAre(Value(), 150, 160, 170, 180, 190, 200, 210, 220, 230, 240));
  Click(1);
  EXPECT_THAT(Years(9),
              ElementsAre(15, 16, 17, 18, 0, "text", 20, CellError::kNotAvailable, true, 24, 25));
}

TEST_F(PlanningSpinners, ReadLettersFromLeftToRight) {
  struct Case {
    const char* flags;
    int first_moved;  // the column whose cell a move later empties; 0 for a row that stays
    Value next;       // what stands in the column behind it then
    int messages;
  } const cases[] = {
      {"", 0, 17, 0},      {"f", 0, 17, 0},   {"c", 0, 17, 0},     {"s", 16, 16, 0},
      {"n", 16, 16, 0},    {"i", 16, 32, 0},  {"I1", 16, 32, 0},   {"i2", 16, 160, 0},
      {"if", 0, 17, 0},    {"is", 16, 32, 0}, {"in", 16, 16, 0},   {"i2n", 16, 16, 0},
      {"ni2", 16, 160, 0}, {"fs", 16, 16, 0}, {"ifs", 16, 16, 0},  {"cs", 15, 15, 0},
      {"q", 0, 17, 1},     {"qs", 16, 16, 1}, {"i22", 16, 160, 1}, {"s2", 16, 16, 1},
  };
  for (const Case& c : cases) {
    Fill(9);
    model.Put("Plan!C9", {c.flags});
    model.Put("Plan!D13", {1});
    Click(2, std::vector<std::string>(c.messages, "OK"));
    const int emptied = c.first_moved == 0 ? 16 : c.first_moved;
    EXPECT_EQ(Years(9)[emptied - 15].IsEmpty(), c.first_moved != 0) << c.flags;
    EXPECT_EQ(Years(9)[emptied - 14], c.next) << c.flags;
    EXPECT_EQ(fake->user_interface.message_boxes().size(), std::size_t(c.messages)) << c.flags;
  }
}

TEST_F(PlanningSpinners, TellUnknownLettersAndMoveWithTheOthers) {
  model.Put("Plan!C9", {"Qsé"});
  model.Put("Plan!C10", {CellError::kRef});
  Click(2, {"OK", "OK", "OK"});
  EXPECT_EQ(Message(0), "clsPlanningSpinners: Invalid project row flag value of q in row 9");
  EXPECT_EQ(Message(1), "clsPlanningSpinners: Invalid project row flag value of é in row 9");
  EXPECT_EQ(Message(2),
            "clsPlanningSpinners: Invalid project row flag value of Error 2023 in row 10");
  EXPECT_EQ(Years(9)[1], Value());
  EXPECT_EQ(Years(10)[1], Value(16));
}

TEST_F(PlanningSpinners, MoveFormulasRelativelyAndFormatsStay) {
  model.Put("Plan!P9", {"=O9+1", "=P9+1", "=$O9*2"});
  model.Fill("Plan!P9");
  model.Fill("Plan!Y9");
  model.Put("Plan!Y9", {"=X9*10"});
  Click(2);
  EXPECT_EQ(model.Formula("Plan!Q9"), "P9+1");
  EXPECT_EQ(model.Formula("Plan!S9"), "$O9*2");
  EXPECT_EQ(model.Formula("Plan!AD9"), "AC9*10") << "everything is parked, as an ordinary paste";
  EXPECT_TRUE(model.IsFilled("Plan!P9"));
  EXPECT_FALSE(model.IsFilled("Plan!Q9"));
  EXPECT_TRUE(model.IsFilled("Plan!AD9"));
  EXPECT_EQ(model.Get("Plan!Q9"), Value(1)) << "calculated at the end";
}

TEST_F(PlanningSpinners, MoveOnlyTheirOwnBlock) {
  model.Put("Plan!C8", {"s"});
  model.Put("Plan!C12", {"s"});
  model.Put("Plan!C14", {"s"});
  Fill(8);
  Fill(14);
  Click(2);
  EXPECT_EQ(model.Get("Plan!P8"), Value(16));
  EXPECT_EQ(model.Get("Plan!P12"), Value());
  EXPECT_EQ(model.Get("Plan!P14"), Value(16));
}

// Without an end row the block runs to the last used row, and the row below stores the value.
TEST_F(PlanningSpinners, TakeTheRowBelowTheLastOneForAMissingEndRow) {
  model.Put("Plan!C13", {"s", Value()});
  Fill(13);
  Click(2);
  EXPECT_EQ(model.Get("Plan!P13"), Value());
  EXPECT_EQ(model.Get("Plan!D14"), Value(2));
}

TEST_F(PlanningSpinners, FindTheLastFlagColumnBeforeTheFirstSaveColumn) {
  model.Put("Plan!B1", {"f"});
  model.Put("Plan!AE1", {"f"});
  model.Put("Plan!AF1", {"s"});
  Click(2);
  EXPECT_THAT(Saved(9), ElementsAre(25, 101, 102, 103, 104, 105, 106, 107, 108, 109));
}

TEST_F(PlanningSpinners, TellWhatIsMissingOnTheSheet) {
  struct Case {
    const char* cell;
    const char* message;
    Value stored;  // the end row's value afterwards
  } const cases[] = {
      {"Plan!AD1", "clsPlanningSpinners: Missing flag in row 1 to indicate shift-save column", 1},
      {"Plan!C1", "clsPlanningSpinners: Missing flag in row 1 to indicate flag column", 1},
      {"Plan!C5",
       "clsPlanningSpinners: No row is flagged on Planning Sheet as holding inflation values", 2},
  };
  for (const Case& c : cases) {
    const Value flag = model.Get(c.cell);
    model.Put(c.cell, {Value()});
    Click(2, {"OK"});
    EXPECT_EQ(Message(), c.message);
    EXPECT_EQ(fake->user_interface.message_boxes()[0].style, kOkOnly);
    EXPECT_EQ(fake->user_interface.message_boxes()[0].title, "Orvanemcro1");
    EXPECT_EQ(model.Get("Plan!D13"), c.stored);
    EXPECT_EQ(model.Get("Plan!P9"), Value(16));
    model.Put(c.cell, {flag});
  }
  model.Put("Plan!C5", {" x"});  // not trimmed
  Click(3, {"OK"});
}

TEST_F(PlanningSpinners, ConvertAsTheMacroLanguageDoes) {
  struct Case {
    Value clicked;
    Value stored;
    const char* inflation;
    int error;
  } const cases[] = {
      {"2", "1", "2", 0},
      {2.5, 1, "2", 0},  // rounds to 2
      {2, Value(), "2", 0},
      {"two", 1, "2", HostError::kTypeMismatch},
      {CellError::kRef, 1, "2", HostError::kTypeMismatch},
      {40000, 1, "2", HostError::kOverflow},
      {2, "end", "2", HostError::kTypeMismatch},
      {32767, -2, "2", HostError::kOverflow},
      {2, 1, "none", HostError::kTypeMismatch},
      {2, 1, "=1/0", HostError::kTypeMismatch},
      {1, 2, "0", 11},
      {2, 1, "1e308", HostError::kOverflow},
  };
  model.Put("Plan!C9", {"i"});
  for (const Case& c : cases) {
    Fill(9);
    model.Put("Plan!D13", {c.stored});
    model.Put("Plan!O5", std::vector<Value>(kYears, Value(c.inflation)));
    int error = 0;
    try {
      Click(c.clicked);
    } catch (const HostError& refused) {
      error = refused.number();
    }
    EXPECT_EQ(error, c.error) << "inflation " << c.inflation << ", error " << c.error;
    if (error == 0) {
      EXPECT_EQ(model.Get("Plan!D13"), Value(2));
    }
  }
}

TEST_F(PlanningSpinners, NeedACallingSpinButtonLinkedToACellOfTheSheet) {
  for (const char* link : {"", "Cover!$D$8", "SomeName", "$D$", "#REF!"}) {
    TestModel other({"Plan", "Cover"});
    other.Put("Plan!A1", {"plan", "f", "s"});
    other.AddSpinner("Plan", "Spinner 1", link);
    testing::FakeServices silent;
    testing::PlanningSpinnersClient object(silent.services, other.application());
    EXPECT_THROW(object.SpinnerChange(), HostError) << "no caller";
    other.SetCaller("Spinner 1");
    EXPECT_THROW(object.SpinnerChange(), HostError) << link;
  }
}

// The row is read from the address's text, from its first digit on; a sheet's name may have one.
TEST_F(PlanningSpinners, ReadTheRowFromTheAddressesFirstDigit) {
  TestModel other({"Plan2"});
  other.Put("Plan2!A1", {"plan", Value(), "f", "s"});
  other.AddSpinner("Plan2", "Spinner 1", "'Plan2'!$F$8");
  other.SetCaller("Spinner 1");
  other.Put("Plan2!F8", {5});
  other.Put("Plan2!C3", {"end"});
  testing::FakeServices services(std::vector<std::string>{"OK"});  // no inflation row
  testing::PlanningSpinnersClient(services.services, other.application()).SpinnerChange();
  EXPECT_EQ(other.Get("Plan2!F3"), Value(5));
}

TEST_F(PlanningSpinners, NotInitialisedDoesNothing) {
  testing::FakeServices silent;
  testing::PlanningSpinnersClient(silent.services, nullptr).SpinnerChange();
  EXPECT_TRUE(silent.user_interface.message_boxes().empty());
}

// --- Properties ---

class SpinnerMoves : public PlanningSpinners {
 protected:
  int Random(int first, int last) {
    return std::uniform_int_distribution<int>(first, last)(random_);
  }
  void FillAtRandom() {
    // Inflation by powers of two, so that dividing gives back what was multiplied.
    for (int row = 5; row <= 6; ++row) {
      for (int column = 15; column <= 25; ++column) {
        model.Sheet("Plan")->Cells(row, column)->SetValue(std::ldexp(1, Random(-3, 3)));
      }
    }
    static constexpr const char* kFlags[] = {"s", "i", "n", "ci2", "f", "", "cn", "i2"};
    for (int row = 9; row <= 12; ++row) {
      model.Put("Plan!C" + std::to_string(row), {kFlags[Random(0, 7)]});
      for (int column = 15; column <= 39; ++column) {
        if (column > 25 && column < 30) continue;
        const int kind = Random(0, 9);
        Value value;
        if (kind > 1) value = Random(-500, 500) / 4.0;
        if (kind == 1) value = "note";
        model.Sheet("Plan")->Cells(row, column)->SetValue(value);
      }
    }
  }
  void Start(int position) { model.Put("Plan!D13", {position}); }
  std::vector<Value> State() {
    std::vector<Value> state;
    for (int row = 9; row <= 12; ++row) {
      for (const Value& value : Years(row)) state.push_back(value);
      for (const Value& value : Saved(row)) state.push_back(value);
    }
    return state;
  }
  void Restore(const std::vector<Value>& state) {
    std::size_t at = 0;
    for (int row = 9; row <= 12; ++row) {
      for (int i = 0; i < kYears; ++i)
        model.Sheet("Plan")->Cells(row, 15 + i)->SetValue(state[at++]);
      for (int i = 0; i < kSaveCells; ++i) {
        model.Sheet("Plan")->Cells(row, 30 + i)->SetValue(state[at++]);
      }
    }
  }

 private:
  std::mt19937 random_{20261121};
};

TEST_F(SpinnerMoves, LaterThenEarlierRestoresYearsAndAllButTheLastTwoSaveCells) {
  for (int round = 0; round < 60; ++round) {
    FillAtRandom();
    Start(4);
    std::vector<std::vector<Value>> years, saved;
    for (int row = 9; row <= 12; ++row) {
      years.push_back(Years(row));
      saved.push_back(Saved(row));
    }
    Click(5);
    Click(4);
    for (int row = 9; row <= 12; ++row) {
      SCOPED_TRACE("round " + std::to_string(round) + ", row " + std::to_string(row));
      EXPECT_EQ(Years(row), years[row - 9]);
      std::vector<Value> expected = saved[row - 9];
      const Value flags = model.Get("Plan!C" + std::to_string(row));
      if (flags != Value() && flags != Value("f")) {
        expected[8] = expected[7];
        expected[9] = Value();
      }
      EXPECT_EQ(Saved(row), expected);
    }
  }
}

TEST_F(SpinnerMoves, SingleStepsAreOneMove) {
  for (int round = 0; round < 40; ++round) {
    FillAtRandom();
    const std::vector<Value> before = State();
    const int from = Random(1, 9);
    const int to = Random(1, 9);
    Start(from);
    Click(to);
    const std::vector<Value> at_once = State();
    Restore(before);
    Start(from);
    for (int at = from; at != to;) {
      at += to > from ? 1 : -1;
      Click(at);
    }
    EXPECT_EQ(State(), at_once) << "from " << from << " to " << to;
  }
}

}  // namespace
}  // namespace vantora
