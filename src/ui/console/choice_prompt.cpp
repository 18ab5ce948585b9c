#include "ui/console/choice_prompt.h"

#include <charconv>

#include "core/convert.h"

namespace vantora::ui {

std::optional<int> MatchEntry(const std::vector<std::string>& entries, std::string_view typed) {
  if (typed.empty()) return std::nullopt;
  int number = 0;
  const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
  const int count = static_cast<int>(entries.size());
  const bool is_number = error == std::errc() && end == typed.data() + typed.size();
  if (is_number && number >= 1 && number <= count) return number - 1;
  std::optional<int> starts_so;
  int starting = 0;
  for (int i = 0; i < count; ++i) {
    if (EqualsIgnoreCase(entries[i], typed)) return i;
    if (entries[i].size() < typed.size()) continue;
    if (EqualsIgnoreCase(std::string_view(entries[i]).substr(0, typed.size()), typed)) {
      starts_so = i;
      ++starting;
    }
  }
  return starting == 1 ? starts_so : std::nullopt;
}

Chosen AskChoice(Terminal& terminal, std::string_view prompt,
                 const std::vector<std::string>& entries) {
  while (true) {
    const std::optional<std::string> typed = terminal.Ask(prompt);
    if (!typed) return {Chosen::Kind::kCancelled};
    if (typed->empty()) return {Chosen::Kind::kKept};
    if (const std::optional<int> index = MatchEntry(entries, *typed)) {
      return {Chosen::Kind::kEntry, *index};
    }
    if (EqualsIgnoreCase(*typed, "cancel")) return {Chosen::Kind::kCancelled};
    terminal.WriteParagraph("\"" + *typed + "\" is none of these: type a number from 1 to " +
                            std::to_string(entries.size()) + ", or the start of a text.");
  }
}

}  // namespace vantora::ui
