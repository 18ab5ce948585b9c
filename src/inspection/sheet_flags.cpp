#include "inspection/sheet_flags.h"

#include <algorithm>
#include <cctype>

#include "core/common.h"
#include "core/convert.h"

namespace vantora::inspection {
namespace {

struct FlagRule {
  std::string_view letter;
  std::string_view meaning;
  // The default of the letter's number; nullopt for a letter that takes none.
  std::optional<int> default_number;
  std::vector<std::string_view> operations;
};

const std::vector<FlagRule>& FlagRules() {
  static const std::vector<FlagRule> rules = {
      {"X", "Reference Sheet, row of its lists", 14, {"clsRefSheet"}},
      {"S", "history sheet", {}, {"clsYearEnd"}},
      {"F", "base case", {}, {"clsFreeze.FreezeCurrentResults", "clsFreeze.SetSpinnerstoBase"}},
      {"Z", "entered data is cleared", {}, {"clsClearAllData.ClearAllData"}},
      {"L", "key list in column I", {}, {"clsDevelopmentMode.CheckPlanningKeys"}},
      {"G", "ratios", {}, {"clsRatiosCompDataSet.RatiosCompDataSet"}},
      {"Y", "row names in column Z", {}, {"clsNameManagement.NameDefinition"}},
      {"M", "in the model menu, group", 0, {"clsMenuManagement.CreateVAMenuBar"}},
      {"I", "icon in the menu, face", 0, {}},
      {"D", "dashboard", {}, {"clsDashboard", "clsDisplayModes", "clsMenuManagement"}},
      {"T", "title sheet", {}, {"clsHider"}},
      {"P", "protected in normal mode", {}, {"clsDevelopmentMode.DevelopmentMode"}},
      {"C", "scrolled to column", 14, {"clsDevelopmentMode.AlignSheets"}},
      {"R", "scrolled to row", 1, {"clsDevelopmentMode.AlignSheets"}},
      {"U", "panes frozen at row", 4, {"clsDevelopmentMode.AlignSheets"}},
      {"V", "panes frozen at column", 5, {"clsDevelopmentMode.AlignSheets"}},
  };
  return rules;
}

bool IsLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

// Reports a number that is written behind the letter but not taken.
void CheckNumber(SheetReader& reader, const std::string& a1, const FlagRule& rule) {
  std::size_t behind = *FindIgnoreCase(a1, rule.letter) + rule.letter.size();
  std::string_view rest = std::string_view(a1).substr(behind);
  const double number = RoundHalfToEven(LeadingNumber(rest));
  const bool is_written = number != 0 || (!rest.empty() && rest.front() == '0');
  if (!is_written || (number >= 1 && number <= 5000)) return;
  reader.Report("A1", "The number behind " + std::string(rule.letter) + ", " +
                          NumberToText(number) + ", is not within 1 to 5000; " +
                          std::to_string(*rule.default_number) + " is taken.");
}

// Flags are written as single capitals; three small letters in a row are a word.
bool ReadsLikeWords(const std::string& a1) {
  int letters_in_a_row = 0;
  for (char c : a1) {
    letters_in_a_row =
        IsLetter(c) && std::islower(static_cast<unsigned char>(c)) ? letters_in_a_row + 1 : 0;
    if (letters_in_a_row == 3) return true;
  }
  return false;
}

}  // namespace

void InspectFlags(SheetReader& reader, SheetFacts& facts) {
  const Value value = reader.ValueAt(1, 1);
  // An error value carries no flag.
  if (value.IsError()) {
    facts.a1 = "(error)";
    reader.Report("A1", "The cell shows an error value, so the sheet has no flags.");
    return;
  }
  facts.a1 = ValueToText(value);
  for (const FlagRule& rule : FlagRules()) {
    if (!FindIgnoreCase(facts.a1, rule.letter)) continue;
    SheetFlag flag{rule.letter, rule.meaning, {}};
    if (rule.default_number) {
      flag.number = FlagNumber(reader.sheet(), rule.letter, *rule.default_number);
      CheckNumber(reader, facts.a1, rule);
    }
    facts.flags.push_back(flag);
    for (std::string_view operation : rule.operations) {
      if (std::find(facts.operations.begin(), facts.operations.end(), operation) ==
          facts.operations.end()) {
        facts.operations.push_back(operation);
      }
    }
  }
  if (!facts.flags.empty() && ReadsLikeWords(facts.a1)) {
    reader.Report("A1", "The cell reads like words, but each of its letters counts as a flag.");
  }
}

const SheetFlag* FindFlag(const SheetFacts& facts, std::string_view letter) {
  auto found = std::find_if(facts.flags.begin(), facts.flags.end(),
                            [&](const SheetFlag& flag) { return flag.letter == letter; });
  return found == facts.flags.end() ? nullptr : &*found;
}

}  // namespace vantora::inspection
