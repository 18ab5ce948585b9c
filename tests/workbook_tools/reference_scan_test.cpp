#include "workbook_tools/reference_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/host_error.h"

namespace vantora {
namespace {

using Names = std::vector<std::string>;

struct ScanCase {
  const char* description;
  Names formulas;
  Names expected;
};

void PrintTo(const ScanCase& value, std::ostream* out) { *out << value.description; }

class ReferenceScan : public ::testing::TestWithParam<ScanCase> {};

TEST_P(ReferenceScan, ListsTheSheetsInOrderOfAppearance) {
  ReferencedSheets referenced;
  for (const std::string& formula : GetParam().formulas) referenced.Add(formula);
  EXPECT_EQ(referenced.names(), GetParam().expected) << GetParam().description;
}

INSTANTIATE_TEST_SUITE_P(
    Formulas, ReferenceScan,
    ::testing::Values(
        ScanCase{"none", {"=A1+B2", "text", "", "12.5"}, {}},
        ScanCase{"two in one formula", {"=Budget!B2+Rates!C3"}, {"Budget", "Rates"}},
        ScanCase{"each once, over all formulas", {"=B!A1*A!A1", "=A!B2-1", "=B!C3"}, {"B", "A"}},
        ScanCase{"spelling counts", {"=Budget!A1", "=BUDGET!A1"}, {"Budget", "BUDGET"}},
        ScanCase{"in a text", {"=\"Stop! Now\"&A1"}, {}},
        ScanCase{"behind a text", {"=IF(A1=\"a!b\",Budget!B2,\"c!\")"}, {"Budget"}},
        ScanCase{"text without a delimiter stays in the name", {"=\"x\"Budget!B2"}, {"xBudget"}},
        ScanCase{"doubled quotes", {"=\"say \"\"no!\"\"\"&Plan!A1"}, {"Plan"}},
        ScanCase{"a lost reference", {"=#REF!A1+#REF!"}, {}},
        ScanCase{"behind a lost reference", {"=#REF!+Plan!A1"}, {"Plan"}},
        // The mark of a lost reference belongs to what follows it.
        ScanCase{"a lost reference as a sheet", {"=#REF!A1!B2"}, {"#REF!A1"}},
        ScanCase{"apostrophes stay", {"='Data 01'!A1+'R&D Costs'!B1"}, {"'Data 01'", "D Costs'"}},
        ScanCase{"a doubled apostrophe", {"='Owner''s Equity'!A1"}, {"'Owner''s Equity'"}},
        ScanCase{"blanks and minus signs stay",
                 {"=A1 -Budget!B2", "=-Rates!A1"},
                 {"A1 -Budget", "-Rates"}},
        ScanCase{"a span of sheets names the last", {"=SUM(Jan:Dec!A1)"}, {"Dec"}},
        ScanCase{"another workbook", {"=[Book.xlsx]Plan!A1"}, {"xlsx]Plan"}},
        ScanCase{"every delimiter",
                 {"=1,A!1.B!1<C!1>D!1?E!1/F!1\\G!1:H!1;I!1$J!1%K!1^L!1&M!1*N!1(O!1)P!1+Q!1=R!1"},
                 {"A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L", "M", "N", "O", "P",
                  "Q", "R"}},
        ScanCase{"a mark without a name", {"=!A1+!", "a!", "=(!)B!C1"}, {"a", "B"}}),
    [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST(ReferenceScanLimit, HoldsFiftyNamesAndFailsWithAnother) {
  ReferencedSheets referenced;
  for (int i = 1; i <= 50; ++i) referenced.Add("=Sheet" + std::to_string(i) + "!A1");
  referenced.Add("=Sheet50!B1+Sheet1!C1");
  ASSERT_EQ(referenced.names().size(), 50u);
  try {
    referenced.Add("=Sheet51!A1");
    FAIL() << "a 51st name was taken";
  } catch (const HostError& error) {
    EXPECT_EQ(error.number(), HostError::kSubscriptOutOfRange);
    EXPECT_EQ(error.source(), "Orvanemcro1");
  }
}

}  // namespace
}  // namespace vantora
