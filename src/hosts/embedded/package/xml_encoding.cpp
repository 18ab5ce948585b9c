#include "package/xml_encoding.h"

#include <cstdint>
#include <cstring>

#include "package/opc_package.h"

namespace vantora::embedded {
namespace {

constexpr std::size_t kAllValid = std::string_view::npos;

void AppendUtf8(std::string& out, std::uint32_t code) {
  auto follow = [&](int shift) { out += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    follow(0);
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    follow(6);
    follow(0);
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    follow(12);
    follow(6);
    follow(0);
  }
}

// Length of the character that begins `text`, whose first byte is not ASCII; 0 when it is none.
std::size_t Utf8Length(std::string_view text) {
  auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  std::uint32_t code = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    code = code << 6 | (byte(i) & 0x3F);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return overlong || surrogate || code > 0x10FFFF ? 0 : length;
}

// U+FFFE or U+FFFF.
bool IsNoncharacter(std::string_view character) {
  return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

void ReplaceEncoding(std::string& text) {
  const std::size_t declaration_end = text.find("?>");
  std::size_t encoding = text.find("UTF-16");
  if (encoding == std::string::npos) encoding = text.find("utf-16");
  if (encoding != std::string::npos && encoding < declaration_end) {
    text.replace(encoding, 6, "UTF-8");
  }
}

std::string FromUtf16(std::string_view bytes, bool little, std::string_view part) {
  auto unit = [&](std::size_t i) {
    auto low = static_cast<unsigned char>(bytes[i + (little ? 0 : 1)]);
    auto high = static_cast<unsigned char>(bytes[i + (little ? 1 : 0)]);
    return static_cast<std::uint32_t>(high << 8 | low);
  };
  auto is_half = [](std::uint32_t code, std::uint32_t first) {
    return code >= first && code < first + 0x400;
  };
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t i = unit(0) == 0xFEFF ? 2 : 0; i < bytes.size(); i += 2) {
    if (i + 1 == bytes.size()) ThrowDamaged(part, XmlError("half a character of UTF-16", i));
    std::uint32_t code = unit(i);
    if (is_half(code, 0xD800) && i + 3 < bytes.size() && is_half(unit(i + 2), 0xDC00)) {
      code = 0x10000 + ((code - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
      i += 2;
    } else if (is_half(code, 0xD800) || is_half(code, 0xDC00)) {
      ThrowDamaged(part, XmlError("half a character of UTF-16", i));
    }
    AppendUtf8(text, code);
  }
  ReplaceEncoding(text);
  return text;
}

}  // namespace

std::size_t FirstInvalidCharacter(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  constexpr std::uint64_t kBlanks = 0x2020202020202020;
  std::size_t at = 0;
  while (at < text.size()) {
    std::uint64_t eight = 0;
    if (at + sizeof eight <= text.size()) {
      std::memcpy(&eight, text.data() + at, sizeof eight);
      // Eight bytes that are ASCII, none of them below the blank.
      if ((((eight - kBlanks) | eight) & kHighBits) == 0) {
        at += sizeof eight;
        continue;
      }
    }
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') return at;
    if (byte < 0x80) {
      ++at;
      continue;
    }
    const std::size_t length = Utf8Length(text.substr(at));
    if (length == 0 || IsNoncharacter(text.substr(at, length))) return at;
    at += length;
  }
  return kAllValid;
}

std::string XmlAsUtf8(std::string bytes, std::string_view part) {
  const bool little =
      bytes.starts_with("\xFF\xFE") || bytes.starts_with(std::string_view("<\0", 2));
  const bool big = bytes.starts_with("\xFE\xFF") || bytes.starts_with(std::string_view("\0<", 2));
  if (little || big) bytes = FromUtf16(bytes, little, part);
  const std::size_t invalid = FirstInvalidCharacter(bytes);
  if (invalid == kAllValid || part.ends_with(".vml")) return bytes;
  const std::string_view there = std::string_view(bytes).substr(invalid, 4);
  const bool is_utf8 = static_cast<unsigned char>(there[0]) < 0x80 || Utf8Length(there) != 0;
  ThrowDamaged(
      part,
      XmlError(is_utf8 ? "a character that XML can't hold" : "bytes that are no UTF-8", invalid));
}

}  // namespace vantora::embedded
