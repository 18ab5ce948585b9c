// Look-ups and conditions over long columns: once they are asked for often, an index answers, and
// it gives what reading the cells gives.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "small_book.h"

namespace vantora::embedded {
namespace {

constexpr int kRows = 200;

// Column A holds values of every kind, many of them several times, column B the row's number.
struct LongColumns : SmallBook {
  LongColumns() : SmallBook({"Plan"}) {
    static constexpr const char* kValues[] = {"7",     "North", "'7",     "TRUE",  "#N/A", "",
                                              "1.1",   "'",     "north",  "-0",    "'7.0", "NORTH*",
                                              "'1E1",  "10",    "ÄRGER",  "ärger", "0.1",  "'TRUE",
                                              "FALSE", "#REF!", "'~North"};
    for (int row = 1; row <= kRows; ++row) {
      const char* value = row % 3 == 0 ? kValues[row * 7 % 21] : kValues[row / 10];
      const std::string number = std::to_string(row), own = "own " + number;
      Row(0, "A" + number, {row % 10 == 9 ? own.c_str() : value, number.c_str()});
    }
    for (int column = 1; column <= kRows; ++column) {
      const Cell cell = model.sheets[0]->cells.Get({column, 1});
      if (cell.exists()) model.sheets[0]->cells.SetConstant({300, column}, cell.value);
    }
  }
};

std::vector<std::string> Formulas() {
  std::vector<std::string> formulas;
  for (const char* wanted :
       {"7",         "\"7\"",       "\"NORTH\"", "\"own 89\"", "\"OWN 149\"", "TRUE",
        "FALSE",     "0",           "1.1",       "1.1+1E-16",  "0.1*3/3",     "10",
        "\"ärGER\"", "\"none\"",    "\"\"",      "\"nor*\"",   "\"~~north\"", "A6",
        "12345",     "\"north~*\"", "\"=7\"",    "\"<>7\"",    "\">5\"",      "\"=TRUE\"",
        "\"#N/A\"",  "\"=\"",       "\"1E1\""}) {
    for (const char* formula :
         {"MATCH(?,A1:A200,0)", "VLOOKUP(?,A1:B200,2,FALSE)", "HLOOKUP(?,A300:GR300,1,0)",
          "XMATCH(?,A1:A200)", "XMATCH(?,A1:A200,0,-1)", "XMATCH(?,A1:A200,-1)",
          "XMATCH(?,A1:A200,1,-1)", "XMATCH(?,A1:A200,2)", "XLOOKUP(?,A300:GR300,A300:GR300,9)",
          "COUNTIF(A1:A200,?)", "COUNTIF(A300:GR300,?)", "SUMIF(A1:A200,?,B1:B200)",
          "SUMIF(A1:A200,?,B100)", "COUNTIFS(A1:A200,?,B1:B200,\">90\")", "SUMIF(A1:A200,?)",
          "AVERAGEIFS(B1:B200,B1:B200,\"<150\",A1:A200,?)", "MAXIFS(B1:B200,A1:A200,?)",
          "MATCH(?,A:A,0)"}) {
      std::string filled = formula;
      filled.replace(filled.find('?'), 1, wanted);
      formulas.push_back(std::move(filled));
    }
  }
  return formulas;
}

TEST(LineIndex, FindsWhatReadingFinds) {
  LongColumns often;
  // So that each range that the formulas look into has its index.
  for (int i = 0; i < 5; ++i) {
    for (const std::string& formula : Formulas()) often.Result(formula);
  }
  for (const std::string& formula : Formulas()) {
    LongColumns once;
    EXPECT_EQ(often.Result(formula), once.Result(formula)) << formula;
  }
}

TEST(LineIndex, IsMadeOnceAFewHaveAsked) {
  LongColumns book;
  CellStore& cells = book.model.sheets[0]->cells;
  LineIndexes indexes;
  const auto find = [&](Area area) {
    const LineIndex* index = indexes.Find(cells, book.model.strings, {0, area});
    return index ? static_cast<int>(index->CandidatesFor(Scalar::Text("OWN 89")).size()) : -1;
  };
  constexpr Area kColumn{1, 1, kRows, 1};
  for (int i = 0; i < 3; ++i) EXPECT_EQ(find(kColumn), -1);
  EXPECT_EQ(find(kColumn), 1);
  book.Row(0, "A3", {"own 89"});
  EXPECT_EQ(find(kColumn), -1);
  for (int i = 0; i < 3; ++i) find(kColumn);
  EXPECT_EQ(find(kColumn), 2);
  EXPECT_EQ(find({1, 1, kRows, 2}), -1) << "it is no line";
  for (int i = 0; i < 9; ++i) EXPECT_EQ(find({1, 2, 20, 2}), -1) << "short ones are read";
  // Each of another length: after a while one index serves them all, those to come as well.
  for (int last = 60; last < 100; ++last) find({2, 1, last, 1});
  EXPECT_EQ(find({2, 1, 150, 1}), 2);
  book.Row(0, "A190", {"own 89"});
  EXPECT_EQ(find({2, 1, 151, 1}), -1);
  EXPECT_EQ(find(kColumn), -1);
  // Far more lines than are kept in mind.
  for (int first = 1; first < 3000; ++first) find({first, 2, first + 100, 2});
  for (int i = 0; i < 3; ++i) find(kColumn);
  EXPECT_EQ(find(kColumn), 3);
}

TEST(LineIndex, CountsInLinesThatGrow) {
  LongColumns book;
  for (int row = 1; row <= kRows; ++row) {
    const std::string last = std::to_string(row);
    LongColumns once;
    for (const char* formula : {"COUNTIF($A$1:A?,\"north\")", "XMATCH(7,$A$1:A?,0,-1)",
                                "SUMIF($A$1:A?,10,$B$1:B?)", "MATCH(\"own 149\",$A$1:A?,0)"}) {
      std::string filled = formula;
      for (std::size_t at; (at = filled.find('?')) != std::string::npos;) {
        filled.replace(at, 1, last);
      }
      EXPECT_EQ(book.Result(filled), once.Result(filled)) << filled;
    }
  }
}

TEST(LineIndex, FollowsWhatChangesInItsCells) {
  LongColumns book;
  CellStore& cells = book.model.sheets[0]->cells;
  const auto look_up = [&] {
    std::string result;
    for (int i = 0; i < 6; ++i) result = book.Result("MATCH(\"own 89\",A1:A200,0)");
    return result + " " + book.Result("SUMIF(A1:A200,\"own 89\",B1:B200)");
  };
  EXPECT_EQ(look_up(), "89 89");
  book.Row(0, "A20", {"Own 89"});
  EXPECT_EQ(look_up(), "20 109");
  book.Row(0, "B20", {"1000"});
  EXPECT_EQ(look_up(), "20 1089");
  cells.Erase({20, 1});
  EXPECT_EQ(look_up(), "89 89");
  book.Row(0, "A500", {"own 89"});
  EXPECT_EQ(look_up(), "89 89");
  cells.InsertColumns(1, 1);
  EXPECT_EQ(look_up(), "#N/A 0");
  EXPECT_EQ(book.Result("MATCH(\"own 89\",B1:B200,0)"), "89");
}

TEST(LineIndex, TellsOfCellsThatAreOutOfDate) {
  LongColumns book;
  for (int i = 0; i < 6; ++i) EXPECT_EQ(book.Result("SUMIF(A1:A200,\"own 19\",B1:B200)"), "19");
  book.Flag(0, "B150", kNeedsCalculation);
  EXPECT_EQ(book.Result("SUMIF(A1:A200,\"own 19\",B1:B200)"), "pending Plan!B150");
  book.model.sheets[0]->cells.SetFlag(CellAt("B150"), kNeedsCalculation, false);
  EXPECT_EQ(book.Result("SUMIF(A1:A200,\"own 19\",B1:B200)"), "19");
  for (int i = 0; i < 6; ++i) EXPECT_EQ(book.Result("MATCH(\"own 19\",A1:A200,0)"), "19");
  // What lies behind the hit need not be up to date, however often it is asked for.
  book.Flag(0, "A150", kNeedsCalculation);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(book.Result("MATCH(\"own 19\",A1:A200,0)"), "19");
  EXPECT_EQ(book.Result("MATCH(\"own 189\",A1:A200,0)"), "pending Plan!A150");
}

}  // namespace
}  // namespace vantora::embedded
