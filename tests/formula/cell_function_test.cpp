// CELL, and INDIRECT's other notation.
#include <gtest/gtest.h>

#include "small_book.h"

namespace vantora::embedded {
namespace {

TEST(CellFunction, TellsOfTheNumberFormat) {
  SmallBook book({"Plan"});
  book.Row(0, "A1", {"1"});
  struct {
    const char* code;
    // CELL("format"), CELL("color") and CELL("parentheses").
    const char* told;
  } const cases[] = {
      {"", "G 0 0"},
      {"@", "G 0 0"},
      {"# ?/?", "G 0 0"},
      {";;;", "G 0 0"},
      {"0", "F0 0 0"},
      {"#,##0", ",0 0 0"},
      {"0.00", "F2 0 0"},
      {"#,##0.00", ",2 0 0"},
      {"\"$\"#,##0_);\\(\"$\"#,##0\\)", "C0 0 0"},
      {"\"$\"#,##0_);[Red]\\(\"$\"#,##0\\)", "C0- 1 0"},
      {"[$\u20AC-2] #,##0.00;[Red]-[$\u20AC-2] #,##0.00", "C2- 1 0"},
      {"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"?\?_);_(@_)", ",2 0 0"},
      {"(0.0)", "F1() 0 1"},
      {"[Blue]0.0%", "P1- 1 0"},
      {"0.00E+00", "S2 0 0"},
      {"0.0,,\"m\"", "F1 0 0"},
      {"dd-mmm-yy", "D1 0 0"},
      {"d-mmm", "D2 0 0"},
      {"mmm-yy", "D3 0 0"},
      {"m/d/yyyy h:mm", "D4 0 0"},
      {"yyyy\\-mm\\-dd", "D4 0 0"},
      {"mm/dd", "D5 0 0"},
      {"h:mm:ss AM/PM", "D6 0 0"},
      {"h:mm AM/PM", "D7 0 0"},
      {"[h]:mm:ss", "D8 0 0"},
      {"h:mm", "D9 0 0"},
  };
  for (const auto& test : cases) {
    book.model.styles.formats[0].number_format = test.code;
    EXPECT_EQ(book.Result("CELL(\"format\",A1)&\" \"&CELL(\"color\",A1)&\" \"&"
                          "CELL(\"parentheses\",A1)"),
              "\"" + std::string(test.told) + "\"")
        << test.code;
  }
}

TEST(CellFunction, TellsOfPlaceAndLook) {
  SmallBook book({"Plan", "My Data"});
  book.Row(0, "A1", {"text", "1"});
  EXPECT_EQ(book.Result("CELL(\"filename\",A1)"), "\"\"");
  EXPECT_EQ(book.Result("CELL(\"address\",'My Data'!B2)"), "\"'My Data'!$B$2\"");
  book.model.folder = "/plans/";
  book.model.file_name = "plan.xlsx";
  EXPECT_EQ(book.Result("CELL(\"filename\",A1)"), "\"/plans/[plan.xlsx]Plan\"");
  // A formula may ask for its own cell: this takes no value.
  EXPECT_EQ(book.Result("CELL(\"filename\",'My Data'!M20)", "M20", 1),
            "\"/plans/[plan.xlsx]My Data\"");
  EXPECT_EQ(book.Result("CELL(\"address\",'My Data'!B2)"), "\"'[plan.xlsx]My Data'!$B$2\"");
  EXPECT_EQ(book.Result("CELL(\"address\",Plan!B2)", "A1", 1), "\"[plan.xlsx]Plan!$B$2\"");

  EXPECT_EQ(book.Result("CELL(\"prefix\",A1)&CELL(\"prefix\",B1)&CELL(\"prefix\",C1)"), "\"'\"");
  for (const auto& [alignment, prefix] : {std::pair(TextAlignment::kRight, "\"\"\""),
                                          {TextAlignment::kCenter, "\"^\""},
                                          {TextAlignment::kFill, "\"\\\""},
                                          {TextAlignment::kLeft, "\"'\""}}) {
    book.model.styles.formats[0].alignment = alignment;
    EXPECT_EQ(book.Result("CELL(\"prefix\",A1)"), prefix);
  }

  SheetModel& plan = *book.model.sheets[0];
  EXPECT_EQ(book.Result("CELL(\"width\",A1)"), "8");
  plan.column_formats = {{2, 3, 0, " width=\"14.7109375\" customWidth=\"1\""},
                         {4, 4, 0, " width=\"14.7109375\" hidden=\"1\""}};
  EXPECT_EQ(book.Result("CELL(\"width\",C1)*100+CELL(\"width\",D1)"), "1400");
}

TEST(Indirect, ReadsR1C1) {
  SmallBook book({"Plan", "My Data"});
  book.Row(0, "A1", {"1", "2", "3"});
  book.Row(0, "A2", {"4", "5", "6"});
  book.Row(1, "A1", {"7"});
  book.model.names = {{"first", -1, "Plan!$A$1:$C$1"}};
  book.model.sheets[0]->cells.SetConstant({1, 9},
                                          CellValue::Text(book.model.strings.Intern("Amount")));
  book.Row(0, "I2", {"70"});
  book.Row(0, "I3", {"80"});
  book.model.tables.push_back({"Sales", 0, {1, 9, 3, 9}, 1, 0, {"Amount"}});
  struct {
    const char* formula;
    const char* result;
  } const cases[] = {
      // From B3.
      {"INDIRECT(\"R1C1\",FALSE)", "1"},
      {"INDIRECT(\"r[-1]c\",FALSE)", "5"},
      {"SUM(INDIRECT(\"R1C1:R[-1]C[1]\",FALSE))", "21"},
      {"SUM(INDIRECT(\"R[-1]C[1]:R1C1\",0))", "21"},
      {"SUM(INDIRECT(\"R2\",FALSE))", "85"},
      {"SUM(INDIRECT(\"C3:C4\",FALSE))", "9"},
      {"ROWS(INDIRECT(\"C\",FALSE))", "1048576"},
      {"INDIRECT(\"'My Data'!R1C1\",FALSE)", "7"},
      {"INDIRECT(\"My Data!R1C1\",FALSE)", "#REF!"},
      {"INDIRECT(\"None!R1C1\",FALSE)", "#REF!"},
      {"INDIRECT(\"R[-3]C\",FALSE)", "#REF!"},
      {"INDIRECT(\"R0C1\",FALSE)", "#REF!"},
      {"INDIRECT(\"R1C99999\",FALSE)", "#REF!"},
      {"INDIRECT(\"R1C1:R2\",FALSE)", "#REF!"},
      {"INDIRECT(\"R[1C1\",FALSE)", "#REF!"},
      {"INDIRECT(\"A1\",FALSE)", "#REF!"},
      {"INDIRECT(\"R1C1\")", "#REF!"},
      {"SUM(INDIRECT(\"first\",FALSE))", "6"},
      {"INDIRECT(ADDRESS(-1,1,4,FALSE),FALSE)", "6"},
      {"SUM(INDIRECT(\"Sales[Amount]\"))", "150"},
      {"SUM(INDIRECT(\"Sales[Costs]\"))", "#REF!"},
      {"SUM(INDIRECT(\"None[Amount]\"))", "#REF!"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(book.Result(test.formula, "B3"), test.result) << test.formula;
  }
}

}  // namespace
}  // namespace vantora::embedded
