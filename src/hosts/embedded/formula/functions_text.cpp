// Texts. Positions and lengths count UTF-16 units, as the host does.
#include <algorithm>

#include "core/convert.h"
#include "formula/functions.h"
#include "formula/number_text.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

// A length argument; negative ones are an error.
std::size_t Length(Call& call, std::size_t i, int when_absent) {
  const int length = call.Integer(i, when_absent);
  if (length < 0) call.Fail(CellError::kValue);
  return static_cast<std::size_t>(std::max(length, 0));
}

Operand Left(Call& call) {
  const std::string_view text = call.Text(0);
  return Scalar::Text(text.substr(0, BytePosition(text, Length(call, 1, 1))));
}

Operand Right(Call& call) {
  const std::string_view text = call.Text(0);
  const std::size_t all = LengthOf(text), wanted = Length(call, 1, 1);
  return Scalar::Text(text.substr(BytePosition(text, all - std::min(all, wanted))));
}

Operand Mid(Call& call) {
  const std::string_view text = call.Text(0);
  const int start = call.Integer(1);
  const std::size_t length = Length(call, 2, 0);
  if (start < 1) return Scalar::Error(CellError::kValue);
  const std::string_view rest = text.substr(BytePosition(text, start - 1));
  return Scalar::Text(rest.substr(0, BytePosition(rest, length)));
}

Operand Len(Call& call) { return Scalar::Number(static_cast<double>(LengthOf(call.Text(0)))); }

// The first match from byte `start` on, where `matches(position)` tells.
template <typename Matches>
Operand PositionOfFirst(std::string_view text, std::size_t start, Matches matches) {
  for (std::size_t position = start; position <= text.size();) {
    if (matches(position)) {
      return Scalar::Number(static_cast<double>(LengthOf(text.substr(0, position)) + 1));
    }
    if (position == text.size()) break;
    NextCharacter(text, position);
  }
  return Scalar::Error(CellError::kValue);
}

// The byte position of the start argument of FIND and SEARCH.
std::optional<std::size_t> StartOfSearch(Call& call, std::string_view text) {
  const int start = call.Integer(2, 1);
  if (start < 1 || static_cast<std::size_t>(start) > LengthOf(text) + 1) return std::nullopt;
  return BytePosition(text, start - 1);
}

Operand Find(Call& call) {
  const std::string_view wanted = call.Text(0), text = call.Text(1);
  const std::optional<std::size_t> start = StartOfSearch(call, text);
  if (!start) return Scalar::Error(CellError::kValue);
  return PositionOfFirst(text, *start, [&](std::size_t position) {
    return text.substr(position, wanted.size()) == wanted;
  });
}

Operand Search(Call& call) {
  const std::string_view pattern = call.Text(0), text = call.Text(1);
  const std::optional<std::size_t> start = StartOfSearch(call, text);
  if (!start) return Scalar::Error(CellError::kValue);
  return PositionOfFirst(text, *start, [&](std::size_t position) {
    return StartMatchesPattern(text.substr(position), pattern);
  });
}

Operand Substitute(Call& call) {
  const std::string_view text = call.Text(0), old = call.Text(1), replacement = call.Text(2);
  const int only = call.Integer(3, 0);
  if (call.size() > 3 && only < 1) return Scalar::Error(CellError::kValue);
  if (old.empty()) return Scalar::Text(text);
  std::string result;
  std::size_t position = 0;
  for (int occurrence = 1;; ++occurrence) {
    const std::size_t found = text.find(old, position);
    if (found == std::string_view::npos) break;
    result.append(text.substr(position, found - position));
    result.append(only == 0 || occurrence == only ? replacement : old);
    position = found + old.size();
  }
  result.append(text.substr(position));
  return call.MakeText(std::move(result));
}

Operand Replace(Call& call) {
  const std::string_view text = call.Text(0), replacement = call.Text(3);
  const int start = call.Integer(1);
  const std::size_t length = Length(call, 2, 0);
  if (start < 1) return Scalar::Error(CellError::kValue);
  const std::size_t from = BytePosition(text, start - 1);
  const std::string_view rest = text.substr(from);
  return call.MakeText(std::string(text.substr(0, from)) + std::string(replacement) +
                       std::string(rest.substr(BytePosition(rest, length))));
}

// Without blanks at the ends, with one blank between words.
Operand Trim(Call& call) {
  std::string result;
  for (char c : TrimBlanks(call.Text(0))) {
    if (c != ' ' || result.back() != ' ') result.push_back(c);
  }
  return call.MakeText(std::move(result));
}

template <typename Change>
Operand ChangeCharacters(Call& call, Change change) {
  const std::string_view text = call.Text(0);
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    AppendCharacter(result, change(NextCharacter(text, position)));
  }
  return call.MakeText(std::move(result));
}

Operand Upper(Call& call) { return ChangeCharacters(call, UpperCase); }
Operand Lower(Call& call) { return ChangeCharacters(call, LowerCase); }

// The first letter of each word, and each letter behind anything but a letter, in upper case.
Operand Proper(Call& call) {
  bool in_word = false;
  return ChangeCharacters(call, [&](char32_t character) {
    const bool letter = IsAlphabetic(character);
    const bool starts_word = letter && !in_word;
    in_word = letter;
    return starts_word ? UpperCase(character) : LowerCase(character);
  });
}

Operand Repeat(Call& call) {
  const std::string_view text = call.Text(0);
  const std::size_t times = Length(call, 1, 0);
  if (text.size() * times > 4 * 32767) return Scalar::Error(CellError::kValue);
  std::string result;
  for (std::size_t i = 0; i < times && !text.empty(); ++i) result.append(text);
  return call.MakeText(std::move(result));
}

Operand Exact(Call& call) { return Scalar::Boolean(call.Text(0) == call.Text(1)); }

Operand Concatenate(Call& call) {
  std::string result;
  for (std::size_t i = 0; i < call.size(); ++i) result.append(call.Text(i));
  return call.MakeText(std::move(result));
}

// The values of an operand row by row, blank ones included.
template <typename Visitor>
void ForEachByRow(Call& call, const Operand& operand, Visitor&& visit) {
  const Operand values = call.evaluator().ToValues(operand);
  if (!values.IsArray()) {
    visit(values.scalar);
    return;
  }
  for (const Scalar& value : values.array->values) visit(value);
}

Operand Concat(Call& call) {
  std::string result;
  for (std::size_t i = 0; i < call.size(); ++i) {
    ForEachByRow(call, call[i], [&](const Scalar& value) { result.append(call.TextOf(value)); });
  }
  return call.MakeText(std::move(result));
}

Operand TextJoin(Call& call) {
  const std::string_view delimiter = call.Text(0);
  const bool skip_empty = call.Boolean(1);
  std::string result;
  bool first = true;
  for (std::size_t i = 2; i < call.size(); ++i) {
    ForEachByRow(call, call[i], [&](const Scalar& value) {
      const std::string_view text = call.TextOf(value);
      if (skip_empty && text.empty()) return;
      if (!first) result.append(delimiter);
      first = false;
      result.append(text);
    });
  }
  return call.MakeText(std::move(result));
}

// Without the control characters.
Operand Clean(Call& call) {
  std::string text(call.Text(0));
  std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < 32; });
  return call.MakeText(std::move(text));
}

Operand ValueOf(Call& call) {
  const Scalar value = call.Value(0);
  if (value.IsBoolean()) return Scalar::Error(CellError::kValue);
  return Scalar::Number(call.NumberOf(value));
}

// Windows' code page: the characters of 128 to 159; 0 where there is none.
constexpr char32_t kCodePage[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

Operand Char(Call& call) {
  const int code = call.Integer(0);
  if (code < 1 || code > 255) return Scalar::Error(CellError::kValue);
  char32_t character = static_cast<char32_t>(code);
  if (code >= 128 && code < 160 && kCodePage[code - 128] != 0) character = kCodePage[code - 128];
  std::string text;
  AppendCharacter(text, character);
  return call.MakeText(std::move(text));
}

Operand Code(Call& call) {
  const std::string_view text = call.Text(0);
  if (text.empty()) return Scalar::Error(CellError::kValue);
  std::size_t position = 0;
  const char32_t character = NextCharacter(text, position);
  const auto found = std::find(std::begin(kCodePage), std::end(kCodePage), character);
  if (found != std::end(kCodePage)) {
    return Scalar::Number(static_cast<double>(128 + (found - std::begin(kCodePage))));
  }
  // What the code page lacks is a question mark.
  return Scalar::Number(character < 256 ? static_cast<double>(character) : '?');
}

constexpr FunctionEntry kFunctions[] = {
    {"CHAR", 1, 1, "v", Char},
    {"CLEAN", 1, 1, "v", Clean},
    {"CODE", 1, 1, "v", Code},
    {"CONCAT", 1, kAnyCount, "r", Concat},
    {"CONCATENATE", 1, kAnyCount, "v", Concatenate},
    {"EXACT", 2, 2, "v", Exact},
    {"FIND", 2, 3, "v", Find},
    {"LEFT", 1, 2, "v", Left},
    {"LEN", 1, 1, "v", Len},
    {"LOWER", 1, 1, "v", Lower},
    {"MID", 3, 3, "v", Mid},
    {"PROPER", 1, 1, "v", Proper},
    {"REPLACE", 4, 4, "v", Replace},
    {"REPT", 2, 2, "v", Repeat},
    {"RIGHT", 1, 2, "v", Right},
    {"SEARCH", 2, 3, "v", Search},
    {"SUBSTITUTE", 3, 4, "v", Substitute},
    {"TEXTJOIN", 3, kAnyCount, "vv*r", TextJoin},
    {"TRIM", 1, 1, "v", Trim},
    {"UPPER", 1, 1, "v", Upper},
    {"VALUE", 1, 1, "v", ValueOf},
};

}  // namespace

std::span<const FunctionEntry> TextFunctions() { return kFunctions; }

}  // namespace vantora::embedded
