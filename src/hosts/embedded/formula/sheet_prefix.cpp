#include "formula/sheet_prefix.h"

#include <cstdint>

#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

// Reads the code point at `position` and moves behind it.
std::uint32_t NextCodePoint(std::string_view text, std::size_t& position) {
  const auto byte = [&](std::size_t at) -> std::uint32_t {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u;
  };
  const std::uint32_t first = byte(position);
  const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
  std::uint32_t point = more == 0 ? first : first & (0x3Fu >> more);
  for (int i = 1; i <= more; ++i) point = (point << 6) | (byte(position + i) & 0x3F);
  position += 1 + more;
  return point;
}

// Blocks of letters and ideographs; signs and punctuation between them need quotes.
bool IsLetterBeyondAscii(std::uint32_t point) {
  if (point == 0xAA || point == 0xB5 || point == 0xBA) return true;
  if (point == 0xD7 || point == 0xF7) return false;
  return (point >= 0xC0 && point <= 0x2C1) || (point >= 0x370 && point <= 0x1FFF) ||
         (point >= 0x2C00 && point <= 0x2DFF) || (point >= 0x3041 && point <= 0x318E) ||
         (point >= 0x3400 && point <= 0x9FFF) || (point >= 0xA000 && point <= 0xA4CF) ||
         (point >= 0xAC00 && point <= 0xD7A3) || (point >= 0xF900 && point <= 0xFAFF);
}

// "R", "C", "RC", "R1", "C1", "R1C1".
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
      if (!IsLetterBeyondAscii(NextCodePoint(name, position))) return true;
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

}  // namespace

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
