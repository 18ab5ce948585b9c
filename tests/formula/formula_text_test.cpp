// Formula texts: what is read as a reference, what comes back, how references follow.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "formula/file_prefixes.h"
#include "formula/formula.h"
#include "sheet_list.h"
#include "small_book.h"

namespace vantora::embedded {
namespace {

using Kind = Reference::Kind;

const SheetList& Sheets() {
  static const SheetList sheets({"Plan", "Data", "R&D Costs", "Owner's", "2024", "AB12", "R1C1",
                                 "Köln", "Last", "Rate€", "TRUE"});
  return sheets;
}

struct TextCase {
  const char* text;
  std::vector<Kind> references;
  std::vector<std::string> names = {};
  bool is_volatile = false;
};

void PrintTo(const TextCase& value, std::ostream* out) { *out << value.text; }

class FormulaTexts : public testing::TestWithParam<TextCase> {};

TEST_P(FormulaTexts, ComeBackByteByByteAndShowTheirReferences) {
  const TextCase& expected = GetParam();
  const Formula formula = ParseFormula(expected.text, CellAt("M100"), Sheets());
  EXPECT_EQ(FormulaText(formula, CellAt("M100"), Sheets()), expected.text);
  std::vector<Kind> kinds;
  for (const Reference& reference : formula.references) kinds.push_back(reference.kind);
  EXPECT_EQ(kinds, expected.references);
  EXPECT_EQ(formula.names, expected.names);
  EXPECT_EQ(formula.is_volatile, expected.is_volatile);
}

constexpr Kind kCell = Kind::kCell;
constexpr Kind kArea = Kind::kArea;
constexpr Kind kColumns = Kind::kColumns;
constexpr Kind kRows = Kind::kRows;
constexpr Kind kGone = Kind::kError;

INSTANTIATE_TEST_SUITE_P(
    Cells, FormulaTexts,
    testing::Values(
        TextCase{"A1", {kCell}}, TextCase{"$A$1+A$1-$A1", {kCell, kCell, kCell}},
        TextCase{"XFD1048576", {kCell}}, TextCase{"XFE1", {}, {"XFE1"}},
        TextCase{"A1048577", {}, {"A1048577"}}, TextCase{"SUM(A1:B2,$C$3:D$4)", {kArea, kArea}},
        TextCase{"SUM(A1:A1)", {kArea}}, TextCase{"SUM($A:$B,C:C)", {kColumns, kColumns}},
        TextCase{"SUM(1:3,$7:$7)", {kRows, kRows}}, TextCase{"1E5+1.5E-3*.5+2.", {}},
        TextCase{"A1:INDEX(B1:B9,3)", {kCell, kArea}}, TextCase{"B5:C7 C1:C9", {kArea, kArea}},
        TextCase{"SUM((A1,B2:B3))", {kCell, kArea}}, TextCase{"A1#+@B1:B5", {kCell, kArea}},
        TextCase{"-A1%^2&\"x\"<>B1", {kCell, kCell}}, TextCase{"LOG10(A1)", {kCell}},
        TextCase{"A1:LOG10(5)", {kCell}},
        TextCase{"_xlfn.XLOOKUP(A1,B:B,C:C)", {kCell, kColumns, kColumns}},
        TextCase{"SUM( A1 ,\n B2 )", {kCell, kCell}}));

INSTANTIATE_TEST_SUITE_P(
    Sheets, FormulaTexts,
    testing::Values(TextCase{"Plan!A1*Data!$B$2", {kCell, kCell}},
                    TextCase{"'R&D Costs'!J10", {kCell}}, TextCase{"'Owner''s'!A1:B2", {kArea}},
                    TextCase{"'2024'!A:A", {kColumns}},
                    TextCase{"'AB12'!A1+'R1C1'!A1+'TRUE'!A1", {kCell, kCell, kCell}},
                    TextCase{"Köln!1:2", {kRows}}, TextCase{"'Rate€'!A1", {kCell}},
                    TextCase{"SUM(Plan:Last!A1)", {kCell}},
                    TextCase{"SUM('Plan:R&D Costs'!A1:B2)", {kArea}},
                    TextCase{"Plan!A1:Plan!B2", {kCell, kCell}},
                    TextCase{"Plan!#REF!+A1", {kGone, kCell}}, TextCase{"#REF!+#REF!A1+#N/A", {}},
                    TextCase{"Data!rate", {}, {"DATA!RATE"}}, TextCase{"Nowhere!A1+A1", {kCell}},
                    TextCase{"Nowhere!A1:B2", {}}, TextCase{"'No where'!$A:$B", {}}));

INSTANTIATE_TEST_SUITE_P(
    Rest, FormulaTexts,
    testing::Values(TextCase{"\"A1 \"\"B2\"\" 'C3\"&D4", {kCell}},
                    TextCase{"{1,2;\"A1\",#N/A}", {}},
                    TextCase{"IF(TRUE,rate.1,_x\\y)", {}, {"RATE.1", "_X\\Y"}},
                    TextCase{"[1]Sheet1!A1:B2+A1", {kCell}, {}, true},
                    TextCase{"'[1]My Sheet'!$A$1+A1", {kCell}, {}, true},
                    TextCase{"[1]!rate", {}, {}, true}, TextCase{"SUM(Sales[Amount])+A1", {kCell}},
                    TextCase{"Sales[[#This Row],[Co'[l]]*A1", {kCell}},
                    TextCase{"[@Amount]*2+Sales[ [#Headers], [B1]:[C1] ]", {}},
                    TextCase{"SUM([1]!Sales[Amount])", {}, {}, true},
                    TextCase{"Sales[[#Nothing],[A]]+A1", {kCell}, {}, true},
                    TextCase{"OFFSET(A1,1,0)", {kCell}, {}, true},
                    TextCase{"today()", {}, {}, true}, TextCase{"\"not closed", {}},
                    TextCase{"'not closed", {}}, TextCase{"Sales[not closed", {}, {}, true},
                    TextCase{"$+#", {}}, TextCase{"", {}}, TextCase{"A1\x01", {}, {}, true}));

TEST(FormulaText, WritesReferencesAsTheHostDoes) {
  struct {
    const char* written;
    const char* read_back;
  } const cases[] = {{"plan!$a1", "Plan!$A1"},       {"'Plan'!A1", "Plan!A1"},
                     {"SUM(B5:$A3)", "SUM($A3:B5)"}, {"'plan:last'!A1", "Plan:Last!A1"},
                     {"sum(b:a)", "sum(A:B)"},       {"IF(a1,Rate,\"a1\")", "IF(A1,Rate,\"a1\")"}};
  for (const auto& test : cases) {
    const Formula formula = ParseFormula(test.written, CellAt("C9"), Sheets());
    EXPECT_EQ(FormulaText(formula, CellAt("C9"), Sheets()), test.read_back);
  }
}

TEST(FormulaTable, KeepsOneFormulaForCellsThatReadTheSameRelatively) {
  FormulaTable table;
  auto intern = [&](const char* text, const char* cell) {
    return table.Intern(ParseFormula(text, CellAt(cell), Sheets()));
  };
  const FormulaId id = intern("A1*$B$2+rate", "C1");
  EXPECT_EQ(intern("E7*$B$2+rate", "G7"), id);
  EXPECT_NE(intern("E7*$B$2+rate", "G8"), id);
  EXPECT_NE(intern("E7*$B$3+rate", "G7"), id);
  EXPECT_NE(intern("E7*B$2+rate", "G7"), id);
  EXPECT_NE(intern("Data!E7*$B$2+rate", "G7"), id);
  EXPECT_EQ(table.size(), 5u);
  EXPECT_EQ(FormulaText(table[id], CellAt("D5"), Sheets()), "B5*$B$2+rate");
}

struct FollowCase {
  const char* text;
  const char* expected;  // null: does not change
  int formula_sheet = 0;
  std::vector<ColumnInsertion> insertions = {{0, 3, 2}};
};

void PrintTo(const FollowCase& value, std::ostream* out) { *out << value.text; }

class Following : public testing::TestWithParam<FollowCase> {};

// Two columns are inserted at C of the sheet "Plan" (id 0).
TEST_P(Following, InsertionsMovesWhatTheyPush) {
  const FollowCase& test = GetParam();
  const std::optional<std::string> followed =
      FollowInsertionsInText(test.text, test.formula_sheet, test.insertions, Sheets());
  if (test.expected) {
    EXPECT_EQ(followed, test.expected);
  } else {
    EXPECT_EQ(followed, std::nullopt);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Following,
    testing::Values(FollowCase{"A1+B$2", nullptr}, FollowCase{"C1+$D$2", "E1+$F$2"},
                    FollowCase{"SUM(A1:B2)", nullptr}, FollowCase{"SUM(B1:C2)", "SUM(B1:E2)"},
                    FollowCase{"SUM(C1:D2)", "SUM(E1:F2)"},
                    FollowCase{"SUM($B:$C,C:C)", "SUM($B:$E,E:E)"},
                    FollowCase{"SUM(1:3,$A$5:$XFD$5)", nullptr}, FollowCase{"SUM(A:XFD)", nullptr},
                    FollowCase{"$XFC$1+XFD2+XFB1", "#REF!+#REF!+XFD1"},
                    FollowCase{"SUM(XFA1:XFD1)", "SUM(XFC1:XFD1)"},
                    FollowCase{"SUM(XFC1:XFD1)", "SUM(#REF!)"},
                    FollowCase{"SUM($A:$XFC)", "SUM($A:$XFD)"},
                    FollowCase{"Plan!$D$1", "Plan!$F$1", 1}, FollowCase{"D1+Data!D1", nullptr, 1},
                    FollowCase{"Plan!XFD1", "Plan!#REF!", 1}, FollowCase{"D1", nullptr, -1},
                    FollowCase{"(Plan!$B$1,Plan!$D$1)", "(Plan!$B$1,Plan!$F$1)", -1},
                    FollowCase{"SUM(Plan:Data!D1)", nullptr}, FollowCase{"[1]Plan!D1", nullptr},
                    FollowCase{"\"D1\"&nowhere!D1&D1#", "\"D1\"&nowhere!D1&F1#"},
                    FollowCase{"A1:INDEX(D:D,3)", "A1:INDEX(F:F,3)"},
                    FollowCase{"B1+C1", "C1+E1", 0, {{0, 1, 1}, {1, 1, 9}, {0, 4, 1}}},
                    FollowCase{"SUM(B1:C1)", "SUM(B1:F1)", 0, {{0, 3, 2}, {0, 5, 1}}}));

TEST(FollowInsertion, KeepsWhatAMovedFormulaPointsAt) {
  struct {
    const char* text;
    const char* before;
    const char* after;
    int formula_sheet;
    const char* expected;  // null: shared unchanged
  } const cases[] = {
      // Formula and precedent both move: the same offsets.
      {"D5*2", "E5", "G5", 0, nullptr},
      {"B5*2", "E5", "G5", 0, "B5*2"},
      {"$D5*2", "E5", "G5", 0, "$F5*2"},
      {"$B5*2", "E5", "G5", 0, nullptr},
      {"D5*2", "B5", "B5", 0, "F5*2"},
      {"Data!D5*2", "E5", "G5", 0, "Data!D5*2"},
      {"SUM(Plan:Data!D5)", "E5", "G5", 0, "SUM(Plan:Data!D5)"},
      {"Plan!D5*2", "E5", "E5", 1, "Plan!F5*2"},
      {"D5*2", "E5", "E5", 1, nullptr},
      {"SUM(B5:D5)", "E5", "G5", 0, "SUM(B5:F5)"},
  };
  const ColumnInsertion insertion{0, 3, 2};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    const Formula formula = ParseFormula(test.text, CellAt(test.before), Sheets());
    const std::optional<Formula> followed = FollowInsertion(
        formula, test.formula_sheet, CellAt(test.before), CellAt(test.after), insertion);
    ASSERT_EQ(followed.has_value(), test.expected != nullptr);
    if (followed) {
      EXPECT_EQ(FormulaText(*followed, CellAt(test.after), Sheets()), test.expected);
    }
  }
}

TEST(RelocateForPaste, LosesOnlyReferencesThatLeaveTheSheet) {
  struct {
    const char* text;
    const char* from;
    const char* to;
    const char* expected;
    bool shared;
  } const cases[] = {
      {"B2+$A$1", "C3", "E9", "D8+$A$1", true},
      {"B2+$A$1", "C3", "A9", "#REF!+$A$1", false},
      {"Plan!A1+B1", "C3", "C1", "Plan!#REF!+#REF!", false},
      {"SUM(A1:C3)", "C3", "B3", "SUM(#REF!)", false},
      {"SUM($A3:C3)", "C3", "B3", "SUM($A3:B3)", true},
      {"SUM(A:A)+3:3", "C3", "XFD1", "SUM(XFB:XFB)+1:1", true},
      {"SUM(A:A)", "B3", "A3", "SUM(#REF!)", false},
      {"SUM(B$5:B5)", "B9", "B2", "SUM(#REF!)", false},
      {"SUM(B$5:B8)", "B9", "B4", "SUM(B3:B$5)", true},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    const Formula formula = ParseFormula(test.text, CellAt(test.from), Sheets());
    const std::optional<Formula> pasted =
        RelocateForPaste(formula, CellAt(test.from), CellAt(test.to));
    EXPECT_EQ(!pasted.has_value(), test.shared);
    EXPECT_EQ(FormulaText(pasted ? *pasted : formula, CellAt(test.to), Sheets()), test.expected);
  }
}

TEST(FilePrefixes, StandBeforeNewerFunctionsInFilesOnly) {
  const struct {
    const char* shown;
    const char* in_file;
  } cases[] = {
      {"SUM(A1,IF(B1,2))", "SUM(A1,IF(B1,2))"},
      {"ifs(A1,1)+Rank.EQ(1,B1:B9)", "_xlfn.ifs(A1,1)+_xlfn.Rank.EQ(1,B1:B9)"},
      {"SORT(FILTER(A1:A9,B1:B9))", "_xlfn._xlws.SORT(_xlfn._xlws.FILTER(A1:A9,B1:B9))"},
      {"\"IFS(\"&'DAYS(x)'!A1&DAYS", "\"IFS(\"&'DAYS(x)'!A1&DAYS"},
      {"MYDAYS(1)+DAYS360(A1,B1)", "MYDAYS(1)+DAYS360(A1,B1)"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(WithFilePrefixes(one.shown), one.in_file);
    EXPECT_EQ(WithFilePrefixes(one.in_file), one.in_file);
    EXPECT_EQ(WithoutFilePrefixes(one.in_file), one.shown);
  }
}

}  // namespace
}  // namespace vantora::embedded
