#include "formula/sheet_prefix.h"

#include "formula/lexical.h"
#include "formula/unicode.h"

namespace vantora::embedded {
bool LooksLikeR1C1(std::string_view name) {
  std::size_t position = 0;
  for (char part : {'R', 'C'}) {
    if (position < name.size() && UpperAscii(name[position]) == part) {
      ++position;
      while (position < name.size() && IsDigit(name[position])) ++position;
    }
  }
  return position == name.size();
}

bool NeedsQuotes(std::string_view name) {
  if (name.empty() || IsDigit(name[0]) || name[0] == '.') return true;
  for (std::size_t position = 0; position < name.size();) {
    const char c = name[position];
    if (IsBeyondAscii(c)) {
      if (!IsAlphabetic(NextCharacter(name, position))) return true;
    } else {
      if (!IsLetter(c) && !IsDigit(c) && c != '_' && c != '.') return true;
      ++position;
    }
  }
  if (EqualIgnoringAsciiCase(name, "TRUE") || EqualIgnoringAsciiCase(name, "FALSE")) return true;
  if (LooksLikeR1C1(name)) return true;
  return IsDigit(name.back()) && ParseA1(name).has_value();
}

void AppendDoublingQuotes(std::string& out, std::string_view name) {
  for (char c : name) {
    out.push_back(c);
    if (c == '\'') out.push_back(c);
  }
}

std::string WithoutDoubledQuotes(std::string_view quoted) {
  std::string name;
  name.reserve(quoted.size());
  for (std::size_t i = 0; i < quoted.size(); ++i) {
    name.push_back(quoted[i]);
    if (quoted[i] == '\'' && i + 1 < quoted.size() && quoted[i + 1] == '\'') ++i;
  }
  return name;
}

std::optional<SheetSpan> FindSheets(std::string_view names, const SheetDirectory& sheets) {
  const std::size_t colon = names.find(':');
  const std::optional<int> first = sheets.IdOf(names.substr(0, colon));
  if (!first) return std::nullopt;
  if (colon == std::string_view::npos) return SheetSpan{*first, *first};
  const std::optional<int> last = sheets.IdOf(names.substr(colon + 1));
  if (!last) return std::nullopt;
  return SheetSpan{*first, *last};
}

void AppendSheetPrefix(std::string& out, int first, int last, const SheetDirectory& sheets) {
  const std::string& first_name = sheets.NameOf(first);
  const std::string& last_name = sheets.NameOf(last);
  const bool quotes = NeedsQuotes(first_name) || NeedsQuotes(last_name);
  if (quotes) out.push_back('\'');
  AppendDoublingQuotes(out, first_name);
  if (last != first) {
    out.push_back(':');
    AppendDoublingQuotes(out, last_name);
  }
  if (quotes) out.push_back('\'');
  out.push_back('!');
}

}  // namespace vantora::embedded
