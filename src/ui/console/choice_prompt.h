// One question with numbered answers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/console/terminal.h"

namespace vantora::ui {

// What was chosen: a position, nothing (Enter without a default), or the way out.
struct Chosen {
  enum class Kind { kEntry, kKept, kCancelled };
  Kind kind = Kind::kKept;
  int index = 0;
};

// The entry that `typed` names: its number (from 1), its text without regard to case, or the only
// one that starts with it. Nullopt when there is none or more than one.
std::optional<int> MatchEntry(const std::vector<std::string>& entries, std::string_view typed);

// Asks until the answer is one of `entries`, Enter, or the way out (end of input, Escape, "cancel"
// unless an entry is called so). The caller has shown the entries with their numbers.
Chosen AskChoice(Terminal& terminal, std::string_view prompt,
                 const std::vector<std::string>& entries);

}  // namespace vantora::ui
