#include "formula/unicode.h"

namespace vantora::embedded {

char32_t NextCharacter(std::string_view text, std::size_t& position) {
  const auto byte = [&](std::size_t at) -> char32_t {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u;
  };
  const char32_t first = byte(position);
  const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
  char32_t character = more == 0 ? first : first & (0x3Fu >> more);
  for (int i = 1; i <= more; ++i) {
    const char32_t next = byte(position + i);
    if ((next & 0xC0) != 0x80) {
      ++position;
      return first;
    }
    character = (character << 6) | (next & 0x3F);
  }
  position += 1 + more;
  return character;
}

void AppendCharacter(std::string& out, char32_t character) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6));
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | (character >> 18));
    put(0x80 | ((character >> 12) & 0x3F));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

namespace {

// Latin Extended-A pairs upper and lower case letters; where the upper one is the odd number.
bool UpperIsOdd(char32_t c) { return (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E); }
bool IsPairedLatin(char32_t c) {
  return c >= 0x100 && c <= 0x17E && c != 0x130 && c != 0x131 && c != 0x138 && c != 0x149 &&
         c != 0x178;
}

}  // namespace

char32_t UpperCase(char32_t c) {
  if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
  if (c == 0xFF) return 0x178;
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
  if (IsPairedLatin(c)) return UpperIsOdd(c) ? c - (c % 2 == 0) : c - (c % 2);
  if (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) return c - 32;
  if (c >= 0x430 && c <= 0x44F) return c - 32;
  if (c >= 0x450 && c <= 0x45F) return c - 80;
  return c;
}

char32_t LowerCase(char32_t c) {
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
  if (c == 0x178) return 0xFF;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  if (IsPairedLatin(c)) return UpperIsOdd(c) ? c + (c % 2) : c + (c % 2 == 0);
  if (c >= 0x391 && c <= 0x3A9) return c + 32;
  if (c >= 0x410 && c <= 0x42F) return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  return c;
}

bool IsAlphabetic(char32_t c) {
  if (c < 0x80) return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return c == 0xAA || c == 0xB5 || c == 0xBA ||
         (c >= 0xC0 && c <= 0x24F && c != 0xD7 && c != 0xF7) || (c >= 0x250 && c <= 0x2C1) ||
         (c >= 0x370 && c <= 0x1FFF) || (c >= 0x2C00 && c <= 0x2DFF) ||
         (c >= 0x3041 && c <= 0x318E) || (c >= 0x3400 && c <= 0xA4CF) ||
         (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF);
}

int CompareIgnoringCase(std::string_view a, std::string_view b) {
  std::size_t in_a = 0, in_b = 0;
  while (in_a < a.size() && in_b < b.size()) {
    const char32_t from_a = LowerCase(NextCharacter(a, in_a));
    const char32_t from_b = LowerCase(NextCharacter(b, in_b));
    if (from_a != from_b) return from_a < from_b ? -1 : 1;
  }
  return (in_a < a.size()) - (in_b < b.size());
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  // The upper and the lower case of a letter take as many bytes.
  return a.size() == b.size() && (a == b || CompareIgnoringCase(a, b) == 0);
}

std::size_t LengthOf(std::string_view text) {
  std::size_t length = 0;
  for (std::size_t position = 0; position < text.size();) {
    length += NextCharacter(text, position) > 0xFFFF ? 2 : 1;
  }
  return length;
}

std::size_t BytePosition(std::string_view text, std::size_t units) {
  std::size_t position = 0;
  while (units > 0 && position < text.size()) {
    std::size_t next = position;
    const std::size_t width = NextCharacter(text, next) > 0xFFFF ? 2 : 1;
    if (width > units) break;
    units -= width;
    position = next;
  }
  return position;
}

bool IsPattern(std::string_view text) {
  return text.find_first_of("*?~") != std::string_view::npos;
}

namespace {

bool Matches(std::string_view text, std::string_view pattern, bool whole) {
  std::size_t in_text = 0, in_pattern = 0;
  // Where to go on after the last `*` when the rest does not match.
  std::size_t star_text = 0, star_pattern = std::string_view::npos;
  while (in_text < text.size() || in_pattern < pattern.size()) {
    if (!whole && in_pattern == pattern.size()) return true;
    if (in_pattern < pattern.size()) {
      std::size_t next_pattern = in_pattern;
      char32_t wanted = NextCharacter(pattern, next_pattern);
      if (wanted == '*') {
        star_text = in_text;
        star_pattern = in_pattern = next_pattern;
        continue;
      }
      const bool any = wanted == '?';
      if (wanted == '~') {
        if (next_pattern == pattern.size()) {
          in_pattern = next_pattern;
          continue;
        }
        wanted = NextCharacter(pattern, next_pattern);
      }
      if (in_text < text.size()) {
        std::size_t next_text = in_text;
        const char32_t found = NextCharacter(text, next_text);
        if (any || LowerCase(found) == LowerCase(wanted)) {
          in_text = next_text;
          in_pattern = next_pattern;
          continue;
        }
      }
    }
    if (star_pattern == std::string_view::npos || star_text >= text.size()) return false;
    NextCharacter(text, star_text);
    in_text = star_text;
    in_pattern = star_pattern;
  }
  return true;
}

}  // namespace

bool MatchesPattern(std::string_view text, std::string_view pattern) {
  return Matches(text, pattern, true);
}

bool StartMatchesPattern(std::string_view text, std::string_view pattern) {
  return Matches(text, pattern, false);
}

}  // namespace vantora::embedded
