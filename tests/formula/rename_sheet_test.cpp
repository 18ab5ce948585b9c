// Formula texts in which a sheet has a new name.
#include "formula/rename_sheet.h"

#include <gtest/gtest.h>

namespace vantora::embedded {
namespace {

struct RenameCase {
  const char* text;
  const char* before;
  const char* after;
  // "" where the text stays.
  const char* renamed;
};

TEST(RenameSheetInText, FindsTheSheetWhereverAFormulaNamesIt) {
  const RenameCase kCases[] = {
      {"Plan!A1+SUM(plan!$B$2:C3)", "Plan", "Budget", "Budget!A1+SUM(Budget!$B$2:C3)"},
      {"Plan!A1", "Plan", "My plan", "'My plan'!A1"},
      {"'My plan'!A1", "My plan", "Plan", "Plan!A1"},
      {"'Owner''s'!A1&\"Owner's!\"", "Owner's", "Bob's", "'Bob''s'!A1&\"Owner's!\""},
      {"Plan!marker*2", "Plan", "2025", "'2025'!marker*2"},
      {"Plan!#REF!+1", "Plan", "Budget", "Budget!#REF!+1"},
      {"SUM(First:Last!A1)", "Last", "End", "SUM(First:End!A1)"},
      {"SUM(First:Last!A1)", "First", "A b", "SUM('A b:Last'!A1)"},
      {"SUM('A b:Last'!A1)", "A b", "First", "SUM(First:Last!A1)"},
      {"Plan!A1:Plan!B2", "Plan", "Budget", "Budget!A1:Budget!B2"},
      {"IF(Plan!A1>1E5,Plan!B2,-Plan!C3)", "Plan", "Köln", "IF(Köln!A1>1E5,Köln!B2,-Köln!C3)"},
      {"T[Plan]+T[[#Totals],[Plan!]]+Plan!A1", "Plan", "X y",
       "T[Plan]+T[[#Totals],[Plan!]]+'X y'!A1"},
      // Other sheets, other workbooks, texts.
      {"Planning!A1+MyPlan!B2", "Plan", "Budget", ""},
      {"[1]Plan!A1+'[Old Plan.xlsx]Plan'!A1+[0]!Plan", "Plan", "Budget", ""},
      {"\"Plan!A1\"&INDIRECT(\"Plan!A1\")", "Plan", "Budget", ""},
      {"#REF!Plan", "Plan", "Budget", ""},
      {"'Plan", "Plan", "Budget", ""},
      {"", "Plan", "Budget", ""},
  };
  for (const RenameCase& test : kCases) {
    EXPECT_EQ(RenameSheetInText(test.text, {test.before, test.after}).value_or(""), test.renamed)
        << test.text;
  }
}

TEST(RenameSheetInLocation, TakesTheSheetWithoutQuotesAsWell) {
  const RenameCase kCases[] = {
      {"'My plan'!A1", "My plan", "Plan", "Plan!A1"},
      {"My plan!A1", "My plan", "Your plan", "'Your plan'!A1"},
      {"Plan!A1:B2", "plan", "Owner's", "'Owner''s'!A1:B2"},
      {"Plan", "Plan", "Budget", ""},
      {"Planning!A1", "Plan", "Budget", ""},
  };
  for (const RenameCase& test : kCases) {
    EXPECT_EQ(RenameSheetInLocation(test.text, {test.before, test.after}).value_or(""),
              test.renamed)
        << test.text;
  }
}

}  // namespace
}  // namespace vantora::embedded
