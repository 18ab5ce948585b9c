// The table of functions, and the list of it in the documentation.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "formula/formula.h"
#include "formula/function.h"
#include "sheet_list.h"

namespace vantora::embedded {
namespace {

// The list as the documentation has it, in lines of at most 118 characters; volatile functions are
// marked.
std::string FunctionList() {
  constexpr std::size_t kWidth = 118;
  std::string text, line = "Functions (volatile ones with a star):";
  for (const FunctionEntry* entry : AllFunctions()) {
    std::string name(entry->name);
    if (entry->is_volatile()) name += "\\*";
    if (line.size() + 1 + name.size() + 1 > kWidth) {
      text += line + "\n";
      line = name;
    } else {
      line += " " + name;
    }
  }
  return text + line + ".\n";
}

TEST(FunctionTable, IsTheListInTheDocumentation) {
  std::ifstream file(VANTORA_SOURCE_DIR "/docs/embedded-host.md");
  std::stringstream text;
  text << file.rdbuf();
  EXPECT_NE(text.str().find(FunctionList()), std::string::npos)
      << "The list in docs/embedded-host.md should read:\n"
      << FunctionList();
}

TEST(FunctionTable, DescribesEachFunctionOnce) {
  const std::vector<const FunctionEntry*> all = AllFunctions();
  for (std::size_t i = 0; i < all.size(); ++i) {
    const FunctionEntry& entry = *all[i];
    EXPECT_LE(entry.least, entry.most) << entry.name;
    EXPECT_FALSE(entry.takes.empty()) << entry.name;
    EXPECT_EQ(entry.takes.find_first_not_of("veraz*"), std::string_view::npos) << entry.name;
    EXPECT_EQ(FindFunction(entry.name), &entry) << entry.name << " stands there twice";
  }
}

TEST(FunctionTable, TellsWhichFormulasAreVolatile) {
  const SheetList sheets({"Plan"});
  for (const char* text : {"now()", "1+RAND()", "OFFSET(A1,1,1)", "_xlfn.RANDARRAY(2)"}) {
    EXPECT_TRUE(ParseFormula(text, {1, 1}, sheets).is_volatile) << text;
  }
  for (const char* text :
       {"SUM(A1)", "DATE(1,1,1)", "\"NOW()\"", "UNKNOWN(1)", "_xlfn.AGGREGATE(9,5,A1)"}) {
    EXPECT_FALSE(ParseFormula(text, {1, 1}, sheets).is_volatile) << text;
  }
}

}  // namespace
}  // namespace vantora::embedded
