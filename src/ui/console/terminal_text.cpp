#include "ui/console/terminal_text.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace vantora::ui {
namespace {

// One character of a UTF-8 text: its code point (nullopt for a byte that starts none) and length.
struct Character {
  std::optional<char32_t> code;
  std::size_t length = 1;
};

Character CharacterAt(std::string_view text, std::size_t position) {
  const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(text[at]); };
  const std::uint8_t first = byte(position);
  if (first < 0x80) return {first, 1};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || position + length > text.size()) return {};
  char32_t code = first & (0xFF >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const std::uint8_t next = byte(position + i);
    if ((next & 0xC0) != 0x80) return {};
    code = (code << 6) | (next & 0x3F);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (overlong || surrogate || code > 0x10FFFF) return {};
  return {code, length};
}

// C0, DEL and C1 controls, and the marks that turn the direction of a line.
bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

int Columns(char32_t code) {
  struct Range {
    char32_t first;
    char32_t last;
  };
  static constexpr Range kCombining[] = {
      {0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
  static constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},  {0x3041, 0xA4CF},
                                    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},  {0xFE30, 0xFE6F},
                                    {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},  {0x1F300, 0x1F64F},
                                    {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
  const auto holds = [code](const Range& range) {
    return code >= range.first && code <= range.last;
  };
  if (std::any_of(std::begin(kCombining), std::end(kCombining), holds)) return 0;
  return std::any_of(std::begin(kWide), std::end(kWide), holds) ? 2 : 1;
}

int ColumnsOf(const Character& character) { return character.code ? Columns(*character.code) : 1; }

// Bytes of the longest start of `text` that fits into `width` columns.
std::size_t FittingLength(std::string_view text, int width) {
  std::size_t position = 0;
  int columns = 0;
  while (position < text.size()) {
    const Character character = CharacterAt(text, position);
    columns += ColumnsOf(character);
    if (columns > width) break;
    position += character.length;
  }
  return position;
}

void WrapLine(std::string_view line, int width, std::vector<std::string>& lines) {
  const std::size_t lines_before = lines.size();
  while (DisplayWidth(line) > width) {
    std::size_t length = std::max(FittingLength(line, width), CharacterAt(line, 0).length);
    const std::size_t blank = line.rfind(' ', length);
    const bool at_blank = blank != std::string_view::npos && blank > 0;
    if (at_blank) length = blank;
    lines.emplace_back(line.substr(0, line.find_last_not_of(' ', length - 1) + 1));
    line.remove_prefix(length);
    if (at_blank) line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  }
  if (!line.empty() || lines.size() == lines_before) lines.emplace_back(line);
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const Character character = CharacterAt(text, position);
    const bool shown = character.code && (!IsControl(*character.code) || *character.code == U'\n');
    if (shown) {
      printable += text.substr(position, character.length);
    } else {
      printable += '?';
    }
    position += character.length;
  }
  return printable;
}

bool IsPlainText(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const Character character = CharacterAt(text, position);
    if (!character.code) return false;
    const char32_t code = *character.code;
    if ((code < 0x20 && code != U'\t') || (code >= 0x7F && code < 0xA0)) return false;
    position += character.length;
  }
  return true;
}

int DisplayWidth(std::string_view text) {
  int columns = 0;
  for (std::size_t position = 0; position < text.size();) {
    const Character character = CharacterAt(text, position);
    columns += ColumnsOf(character);
    position += character.length;
  }
  return columns;
}

std::string CutToWidth(std::string_view text, int width) {
  if (width <= 0) return "";
  if (DisplayWidth(text) <= width) return std::string(text);
  if (width <= 3) return std::string(text.substr(0, FittingLength(text, width)));
  return std::string(text.substr(0, FittingLength(text, width - 3))) + "...";
}

std::vector<std::string> WrapText(std::string_view text, int width) {
  std::vector<std::string> lines;
  width = std::max(width, 1);
  while (true) {
    const std::size_t line_break = text.find('\n');
    std::string_view line = text.substr(0, line_break);
    if (line.ends_with('\r')) line.remove_suffix(1);
    WrapLine(line, width, lines);
    if (line_break == std::string_view::npos) return lines;
    text.remove_prefix(line_break + 1);
  }
}

std::string WithoutAccelerators(std::string_view caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    plain += caption[i];
  }
  return plain;
}

}  // namespace vantora::ui
