#include "formula/lexical.h"

#include <array>

namespace vantora::embedded {
namespace {

struct ErrorName {
  std::string_view name;
  std::optional<CellError> error;
};

constexpr std::array<ErrorName, 15> kErrorNames = {{
    {"#NULL!", CellError::kNull},
    {"#DIV/0!", CellError::kDiv0},
    {"#VALUE!", CellError::kValue},
    {"#REF!", CellError::kRef},
    {"#NAME?", CellError::kName},
    {"#NUM!", CellError::kNum},
    {"#N/A", CellError::kNotAvailable},
    {"#GETTING_DATA", std::nullopt},
    {"#SPILL!", std::nullopt},
    {"#CALC!", std::nullopt},
    {"#FIELD!", std::nullopt},
    {"#BLOCKED!", std::nullopt},
    {"#UNKNOWN!", std::nullopt},
    {"#CONNECT!", std::nullopt},
    {"#BUSY!", std::nullopt},
}};

}  // namespace

std::string UpperAscii(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = UpperAscii(c);
  return upper;
}

bool EqualIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (UpperAscii(a[i]) != UpperAscii(b[i])) return false;
  }
  return true;
}

std::size_t EndOfQuoted(std::string_view text, std::size_t position) {
  const char quote = text[position];
  for (++position; position < text.size(); ++position) {
    if (text[position] != quote) continue;
    if (position + 1 >= text.size() || text[position + 1] != quote) return position + 1;
    ++position;
  }
  return text.size();
}

std::size_t EndOfBrackets(std::string_view text, std::size_t position) {
  int depth = 0;
  for (; position < text.size(); ++position) {
    const char c = text[position];
    if (c == '\'') {
      ++position;
    } else if (c == '[') {
      ++depth;
    } else if (c == ']' && --depth == 0) {
      return position + 1;
    }
  }
  return text.size();
}

std::size_t EndOfName(std::string_view text, std::size_t position) {
  while (position < text.size() && (IsNameCharacter(text[position]) || text[position] == '$')) {
    ++position;
  }
  return position;
}

std::size_t EndOfNumber(std::string_view text, std::size_t position) {
  auto skip_digits = [&] {
    while (position < text.size() && IsDigit(text[position])) ++position;
  };
  skip_digits();
  if (position < text.size() && text[position] == '.') {
    ++position;
    skip_digits();
  }
  if (position < text.size() && UpperAscii(text[position]) == 'E') {
    std::size_t exponent = position + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (exponent < text.size() && IsDigit(text[exponent])) {
      position = exponent;
      skip_digits();
    }
  }
  return position;
}

std::size_t ErrorNameLength(std::string_view text, std::size_t position) {
  for (const ErrorName& entry : kErrorNames) {
    if (EqualIgnoringAsciiCase(text.substr(position, entry.name.size()), entry.name)) {
      return entry.name.size();
    }
  }
  return 0;
}

std::optional<CellError> ErrorOfName(std::string_view name) {
  for (const ErrorName& entry : kErrorNames) {
    if (EqualIgnoringAsciiCase(name, entry.name)) return entry.error;
  }
  return std::nullopt;
}

std::string_view NameOfError(CellError error) {
  for (const ErrorName& entry : kErrorNames) {
    if (entry.error == error) return entry.name;
  }
  return "#VALUE!";
}

}  // namespace vantora::embedded
