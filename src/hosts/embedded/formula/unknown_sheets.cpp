#include "formula/unknown_sheets.h"

#include <string_view>

#include "formula/lexical.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kLostReference = "#REF!";
// What ends a sheet's name that stands without quotes.
constexpr std::string_view kDelimiters = " ,;()+-*/^&=<>{}\"@%\x01";

// Where the name begins whose "!" is at `mark`, without its quotes.
std::string NameBefore(std::string_view text, std::size_t mark) {
  if (mark > 0 && text[mark - 1] == '\'') {
    // A doubled quote belongs to the name.
    std::size_t begin = mark - 1;
    while (begin > 0) {
      begin = text.rfind('\'', begin - 1);
      if (begin == std::string_view::npos) return std::string(text.substr(0, mark));
      if (begin == 0 || text[begin - 1] != '\'') break;
      --begin;
    }
    return WithoutDoubledQuotes(text.substr(begin + 1, mark - begin - 2));
  }
  const std::size_t before =
      mark == 0 ? std::string_view::npos : text.find_last_of(kDelimiters, mark - 1);
  const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
  return std::string(text.substr(begin, mark - begin));
}

}  // namespace

std::optional<std::string> UnknownSheetIn(const Formula& formula, const SheetDirectory& sheets) {
  const std::string_view text = formula.text;
  bool in_text = false;
  bool in_name = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '"' && !in_name) in_text = !in_text;
    if (c == '\'' && !in_text) in_name = !in_name;
    if (in_text || in_name) continue;
    if (c == '[') {
      // Names of columns may hold any of these signs.
      at = EndOfBrackets(text, at) - 1;
      continue;
    }
    if (text.substr(at).starts_with(kLostReference)) {
      at += kLostReference.size() - 1;
    } else if (c == '!') {
      // Where the sheet exists, the "!" is that of a defined name.
      std::string name = NameBefore(text, at);
      if (!FindSheets(name, sheets)) return name;
    }
  }
  return std::nullopt;
}

}  // namespace vantora::embedded
