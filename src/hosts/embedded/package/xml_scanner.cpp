#include "package/xml_scanner.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "package/file_limits.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Kinds of bytes, by table: every byte of a tag is looked at.
enum ByteKind : std::uint8_t { kNameByte = 1, kValueEnd = 2 };

constexpr std::array<std::uint8_t, 256> kByteKinds = [] {
  std::array<std::uint8_t, 256> kinds{};
  for (int c = 0; c < 256; ++c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
    const bool other = (c >= '0' && c <= '9') || c == '_' || c == ':' || c == '-' || c == '.';
    if (letter || other) kinds[c] = kNameByte;
    // What an attribute's value ends with, or what it holds only as the start of something else.
    if (c == '"' || c == '\'' || c == '<' || c == '&') kinds[c] = kValueEnd;
  }
  return kinds;
}();

bool IsKind(char c, ByteKind kind) { return kByteKinds[static_cast<unsigned char>(c)] == kind; }

bool AllBlank(std::string_view text) { return std::all_of(text.begin(), text.end(), IsBlank); }

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return (x >= 'A' && x <= 'Z' ? x + 32 : x) == (y >= 'A' && y <= 'Z' ? y + 32 : y);
  });
}

std::string Quoted(std::string_view name) { return "\"" + std::string(name.substr(0, 60)) + "\""; }

void AppendUtf8(std::string& out, std::uint32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool IsSurrogate(std::uint32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

bool IsXmlCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code <= 0x10FFFF && !IsSurrogate(code) && code != 0xFFFE && code != 0xFFFF;
}

// What a reference such as "&amp;" or "&#65;" stands for, and how long it is.
struct CharacterReference {
  std::uint32_t code;
  std::size_t length;
};

std::optional<CharacterReference> NumericReferenceAt(std::string_view text) {
  const bool hex = text.size() > 2 && text[2] == 'x';
  std::size_t at = hex ? 3 : 2;
  const std::size_t first = at;
  std::uint32_t code = 0;
  for (; at < text.size() && text[at] != ';'; ++at) {
    const int digit = HexDigit(text[at]);
    if (digit < 0 || (!hex && digit > 9)) return std::nullopt;
    code = code * (hex ? 16 : 10) + static_cast<std::uint32_t>(digit);
    if (code > 0x10FFFF) return std::nullopt;
  }
  if (at == first || at == text.size() || !IsXmlCharacter(code)) return std::nullopt;
  return CharacterReference{code, at + 1};
}

// The reference at the start of `text`, which begins with "&"; nullopt when it is none that a
// document without declarations of its own can have.
std::optional<CharacterReference> ReferenceAt(std::string_view text) {
  if (text.size() > 1 && text[1] == '#') return NumericReferenceAt(text);
  for (const auto& [name, character] :
       {std::pair("&amp;", '&'), std::pair("&lt;", '<'), std::pair("&gt;", '>'),
        std::pair("&quot;", '"'), std::pair("&apos;", '\'')}) {
    if (text.starts_with(name)) {
      return CharacterReference{static_cast<unsigned char>(character), std::strlen(name)};
    }
  }
  return std::nullopt;
}

// The code of "_xHHHH_" at the start of `text`; nullopt when there is none.
std::optional<std::uint32_t> EscapeAt(std::string_view text) {
  if (text.size() < 7 || text[0] != '_' || text[1] != 'x' || text[6] != '_') return std::nullopt;
  std::uint32_t code = 0;
  for (char c : text.substr(2, 4)) {
    int digit = HexDigit(c);
    if (digit < 0) return std::nullopt;
    code = code * 16 + static_cast<std::uint32_t>(digit);
  }
  return code;
}

void AppendEscape(std::string& out, unsigned code) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  out += "_x";
  for (int shift = 12; shift >= 0; shift -= 4) out += kDigits[(code >> shift) & 15];
  out += '_';
}

// U+FFFE and U+FFFF, which XML can't hold: the last byte of the one at `at`, or 0.
unsigned NoncharacterAt(std::string_view text, std::size_t at) {
  const std::string_view rest = text.substr(at, 3);
  if (rest != "\xEF\xBF\xBE" && rest != "\xEF\xBF\xBF") return 0;
  return static_cast<unsigned char>(rest[2]);
}

std::string Encode(std::string_view text, bool attribute) {
  std::string out;
  out.reserve(text.size() + 8);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '\r':
        out += "&#13;";
        break;
      case '"':
        out += attribute ? "&quot;" : "\"";
        break;
      case '\n':
        out += attribute ? "&#10;" : "\n";
        break;
      case '\t':
        out += attribute ? "&#9;" : "\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          AppendEscape(out, static_cast<unsigned char>(c));
        } else if (const unsigned last = NoncharacterAt(text, i)) {
          AppendEscape(out, 0xFF40 | last);
          i += 2;
        } else {
          out += c;
        }
    }
  }
  return out;
}

}  // namespace

std::string_view LocalName(std::string_view name) {
  std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

XmlScanner::XmlScanner(std::string_view document, Mode mode) : document_(document), mode_(mode) {
  if (document_.starts_with(kByteOrderMark)) position_ = kByteOrderMark.size();
}

XmlScanner::Token XmlScanner::Next() {
  attributes_read_ = false;
  begin_ = position_;
  if (position_ >= document_.size()) return Finish();
  if (document_[position_] != '<') return ReadText();
  if (position_ + 1 >= document_.size()) Fail("the document ends within a tag", begin_);
  switch (document_[position_ + 1]) {
    case '/':
      return ReadEndTag();
    case '!':
    case '?':
      return ReadSpecial();
    default:
      return ReadStartTag();
  }
}

void XmlScanner::Fail(const std::string& what, std::size_t offset) const {
  throw XmlError(what, offset);
}

XmlScanner::Token XmlScanner::Finish() {
  end_ = position_;
  if (!open_.empty()) {
    Fail("the document ends before the element " + Quoted(open_.back()) + " is closed", begin_);
  }
  if (!root_seen_) Fail("the document has no element", begin_);
  return token_ = Token::kDone;
}

XmlScanner::Token XmlScanner::ReadText() {
  const char* from = document_.data() + position_;
  const void* next = std::memchr(from, '<', document_.size() - position_);
  end_ = next ? static_cast<std::size_t>(static_cast<const char*>(next) - document_.data())
              : document_.size();
  position_ = end_;
  text_ = document_.substr(begin_, end_ - begin_);
  is_cdata_ = false;
  if (open_.empty() && !AllBlank(text_)) Fail("text outside the root element", begin_);
  if (mode_ == Mode::kStrict) CheckText();
  return token_ = Token::kText;
}

void XmlScanner::CheckText() const {
  std::size_t at = text_.find('&');
  for (; at != std::string_view::npos; at = text_.find('&', at)) {
    at += ReferenceLength(begin_ + at);
  }
  if (at = text_.find("]]>"); at != std::string_view::npos) {
    Fail("a \"]]>\" within text", begin_ + at);
  }
}

std::size_t XmlScanner::ReferenceLength(std::size_t at) const {
  const std::string_view rest = document_.substr(at);
  if (const auto reference = ReferenceAt(rest)) return reference->length;
  std::size_t end = std::min(rest.find_first_of(";<\"' \r\n\t"), rest.size());
  if (end < rest.size() && rest[end] == ';') ++end;
  Fail("the reference " + Quoted(rest.substr(0, end)) + ", which stands for no character", at);
}

XmlScanner::Token XmlScanner::ReadStartTag() {
  const char* const data = document_.data();
  const std::size_t size = document_.size();
  std::size_t at = begin_ + 1;
  if (!IsNameStart(data[at])) Fail("a \"<\" that begins no tag", begin_);
  while (at < size && IsKind(data[at], kNameByte)) ++at;
  name_ = document_.substr(begin_ + 1, at - begin_ - 1);
  name_end_ = at;
  if (mode_ == Mode::kStrict) {
    at = ReadAttributes();
    attributes_read_ = true;
    is_empty_ = data[at - 1] == '/';
  } else {
    at = SkipAttributes();
    is_empty_ = at > name_end_ && data[at - 1] == '/';
  }
  end_ = position_ = at + 1;
  if (open_.empty()) {
    if (root_seen_) Fail("a second root element " + Quoted(name_), begin_);
    root_seen_ = true;
  }
  if (!is_empty_) {
    if (open_.size() == kDeepestElement) {
      throw XmlError(
          "more than " + std::to_string(kDeepestElement) + " elements within one another", begin_,
          FileError::Code::kTooLarge);
    }
    open_.push_back(name_);
  }
  return token_ = Token::kStart;
}

std::size_t XmlScanner::SkipAttributes() const {
  const char* const data = document_.data();
  const std::size_t size = document_.size();
  std::size_t at = name_end_;
  while (at < size && data[at] != '>') {
    char c = data[at];
    if (c == '"' || c == '\'') {
      const void* quote = std::memchr(data + at + 1, c, size - at - 1);
      if (!quote) Fail("an attribute of " + Quoted(name_) + " lacks its closing quote", at);
      at = static_cast<std::size_t>(static_cast<const char*>(quote) - data);
    } else if (c == '<') {
      Fail("the tag " + Quoted(name_) + " is not closed", begin_);
    }
    ++at;
  }
  if (at >= size) Fail("the document ends within the tag " + Quoted(name_), begin_);
  return at;
}

XmlScanner::Token XmlScanner::ReadEndTag() {
  const void* close = std::memchr(document_.data() + begin_, '>', document_.size() - begin_);
  if (!close) Fail("the document ends within an end tag", begin_);
  end_ = static_cast<std::size_t>(static_cast<const char*>(close) - document_.data()) + 1;
  position_ = end_;
  name_ = document_.substr(begin_ + 2, end_ - begin_ - 3);
  while (!name_.empty() && IsBlank(name_.back())) name_.remove_suffix(1);
  if (open_.empty()) Fail("an end tag " + Quoted(name_) + " without its start tag", begin_);
  if (open_.back() != name_) {
    auto outer = std::find(open_.rbegin(), open_.rend(), name_);
    if (mode_ == Mode::kStrict || outer == open_.rend()) {
      Fail("the end tag " + Quoted(name_) + " does not match the start tag " + Quoted(open_.back()),
           begin_);
    }
    open_.erase(outer.base(), open_.end());
  }
  open_.pop_back();
  is_empty_ = false;
  return token_ = Token::kEnd;
}

XmlScanner::Token XmlScanner::ReadSpecial() {
  std::string_view rest = document_.substr(begin_);
  std::string_view opening = "<?";
  std::string_view closing = "?>";
  if (rest.starts_with("<!--")) {
    opening = "<!--";
    closing = "-->";
  } else if (rest.starts_with("<![CDATA[")) {
    opening = "<![CDATA[";
    closing = "]]>";
  } else if (rest.starts_with("<![") && mode_ == Mode::kLenient) {
    opening = "<![";  // <![if ...]> and <![endif]>, as legacy drawings have them
    closing = "]>";
  } else if (rest.starts_with("<!")) {
    Fail("a document type declaration, which a part must not have", begin_);
  }
  std::size_t close = rest.find(closing, opening.size());
  if (close == std::string_view::npos) Fail("a " + Quoted(opening) + " that is not closed", begin_);
  position_ = end_ = begin_ + close + closing.size();
  const std::string_view inside = rest.substr(opening.size(), close - opening.size());
  if (opening == "<![CDATA[") {
    if (open_.empty()) Fail("text outside the root element", begin_);
    text_ = inside;
    is_cdata_ = true;
    return token_ = Token::kText;
  }
  if (mode_ == Mode::kStrict && opening == "<!--" &&
      (inside.find("--") != std::string_view::npos || inside.ends_with('-'))) {
    Fail("a \"--\" within a comment", begin_);
  }
  if (mode_ == Mode::kStrict && opening == "<?") CheckInstruction(inside);
  return token_ = Token::kOther;
}

void XmlScanner::CheckInstruction(std::string_view inside) const {
  std::size_t name_end = 0;
  while (name_end < inside.size() && IsKind(inside[name_end], kNameByte)) ++name_end;
  const std::string_view name = inside.substr(0, name_end);
  const bool ends = name_end == inside.size() || IsBlank(inside[name_end]);
  if (name.empty() || !IsNameStart(name.front()) || !ends) {
    Fail("a processing instruction without a name", begin_);
  }
  if (!EqualsIgnoringCase(name, "xml")) return;
  const std::size_t first = document_.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  if (name != "xml" || begin_ != first) {
    Fail("an XML declaration that is not at the beginning", begin_);
  }
  CheckDeclaration(inside.substr(name_end));
}

// `declaration` is what follows "<?xml": a version, and perhaps an encoding and whether the
// document stands alone, in this order.
void XmlScanner::CheckDeclaration(std::string_view declaration) const {
  constexpr std::string_view kKnown[] = {"version", "encoding", "standalone"};
  const std::string tag = "<xml" + std::string(declaration) + "/>";
  XmlScanner xml(tag);
  bool is_sound = true;
  try {
    xml.Next();
  } catch (const XmlError&) {
    is_sound = false;
  }
  is_sound = is_sound && xml.end() == tag.size() && xml.Attribute("version");
  auto next = std::begin(kKnown);
  for (const XmlAttribute& attribute : xml.attributes()) {
    if (!is_sound) break;
    next = std::find(next, std::end(kKnown), attribute.name);
    is_sound = next != std::end(kKnown);
  }
  if (!is_sound) Fail("a malformed XML declaration", begin_);
  if (const auto encoding = xml.Attribute("encoding")) CheckEncoding(*encoding);
}

void XmlScanner::CheckEncoding(std::string_view encoding) const {
  for (std::string_view known : {"UTF-8", "UTF8", "US-ASCII", "ASCII"}) {
    if (EqualsIgnoringCase(encoding, known)) return;
  }
  Fail("the encoding " + Quoted(encoding) + ", where only UTF-8 can be read", begin_);
}

const std::vector<XmlAttribute>& XmlScanner::attributes() const {
  if (attributes_read_) return attributes_;
  attributes_.clear();
  if (token_ == Token::kStart) ReadAttributes();
  attributes_read_ = true;
  return attributes_;
}

std::size_t XmlScanner::ReadAttributes() const {
  const char* const data = document_.data();
  const std::size_t size = document_.size();
  std::size_t at = name_end_;
  attributes_.clear();
  while (true) {
    const std::size_t before = at;
    while (at < size && IsBlank(data[at])) ++at;
    if (at == size) Fail("the document ends within the tag " + Quoted(name_), begin_);
    if (data[at] == '>') break;
    if (data[at] == '/' && at + 1 < size && data[at + 1] == '>') {
      ++at;
      break;
    }
    if (at == before && !attributes_.empty() && mode_ == Mode::kStrict) {
      Fail("no blank after the attribute " + Quoted(attributes_.back().name), at);
    }
    if (data[at] == '<') Fail("the tag " + Quoted(name_) + " is not closed", begin_);
    at = ReadAttribute(at);
  }
  if (mode_ == Mode::kStrict) CheckNamesDiffer();
  return at;
}

std::size_t XmlScanner::ReadAttribute(std::size_t at) const {
  const char* const data = document_.data();
  const std::size_t size = document_.size();
  const std::size_t start = at;
  while (at < size && IsKind(data[at], kNameByte)) ++at;
  const std::string_view name = document_.substr(start, at - start);
  while (at < size && IsBlank(data[at])) ++at;
  if (name.empty() || !IsNameStart(name.front()) || at == size || data[at] != '=') {
    Fail("a malformed attribute in the tag " + Quoted(name_), at);
  }
  ++at;
  while (at < size && IsBlank(data[at])) ++at;
  if (at == size || (data[at] != '"' && data[at] != '\'')) {
    Fail("the attribute " + Quoted(name) + " has no quotes", at);
  }
  const char quote = data[at];
  const std::size_t value = ++at;
  for (; at < size && data[at] != quote; ++at) {
    if (!IsKind(data[at], kValueEnd) || mode_ == Mode::kLenient) continue;
    if (data[at] == '<') Fail("a \"<\" within the attribute " + Quoted(name), at);
    if (data[at] == '&') at += ReferenceLength(at) - 1;
  }
  if (at == size) Fail("the attribute " + Quoted(name) + " lacks its closing quote", value - 1);
  attributes_.push_back({name, document_.substr(value, at - value)});
  return at + 1;
}

// Each with each where they are few, as in nearly all tags.
void XmlScanner::CheckNamesDiffer() const {
  constexpr std::size_t kFew = 8;
  auto fail = [this](std::string_view name) {
    Fail("the tag " + Quoted(name_) + " has the attribute " + Quoted(name) + " twice", begin_);
  };
  if (attributes_.size() <= kFew) {
    for (std::size_t i = 1; i < attributes_.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (attributes_[i].name == attributes_[j].name) fail(attributes_[i].name);
      }
    }
    return;
  }
  std::vector<std::string_view> names;
  names.reserve(attributes_.size());
  for (const XmlAttribute& attribute : attributes_) names.push_back(attribute.name);
  std::sort(names.begin(), names.end());
  const auto twice = std::adjacent_find(names.begin(), names.end());
  if (twice != names.end()) fail(*twice);
}

std::optional<std::string_view> XmlScanner::Attribute(std::string_view name) const {
  for (const XmlAttribute& attribute : attributes()) {
    if (attribute.name == name) return attribute.value;
  }
  return std::nullopt;
}

std::size_t XmlScanner::depth() const {
  return open_.size() - (token_ == Token::kStart && !is_empty_ ? 1 : 0);
}

std::string_view XmlScanner::SkipElement() {
  if (is_empty_) return {};
  const std::size_t from = end_;
  const std::size_t outside = open_.size() - 1;
  do {
    Next();
  } while (open_.size() > outside);
  return document_.substr(from, begin_ - from);
}

std::string XmlScanner::ElementText() {
  std::string joined;
  if (is_empty_) return joined;
  const std::size_t outside = open_.size() - 1;
  while (true) {
    Next();
    if (open_.size() <= outside) return joined;
    if (token_ != Token::kText) continue;
    if (is_cdata_) {
      joined += text_;
    } else {
      joined += DecodeXml(text_);
    }
  }
}

std::string DecodeXml(std::string_view raw) {
  std::string out;
  std::size_t special = raw.find_first_of("&\r");
  if (special == std::string_view::npos) return out = raw;
  out.reserve(raw.size());
  std::size_t from = 0;
  for (; special != std::string_view::npos; special = raw.find_first_of("&\r", from)) {
    out += raw.substr(from, special - from);
    from = special + 1;
    if (raw[special] == '\r') {
      // Line ends within a document are read as one line feed.
      out += '\n';
      if (from < raw.size() && raw[from] == '\n') ++from;
      continue;
    }
    if (const auto reference = ReferenceAt(raw.substr(special))) {
      AppendUtf8(out, reference->code);
      from = special + reference->length;
    } else {
      out += '&';
    }
  }
  out += raw.substr(from);
  return out;
}

std::string DecodeSpreadsheetText(std::string_view raw) {
  std::string text = DecodeXml(raw);
  std::size_t at = text.find("_x");
  if (at == std::string::npos) return text;
  std::string out;
  std::string_view rest = text;
  for (; at != std::string_view::npos; at = rest.find("_x")) {
    out += rest.substr(0, at);
    rest.remove_prefix(at);
    std::optional<std::uint32_t> code = EscapeAt(rest);
    std::size_t length = 7;
    if (code && IsSurrogate(*code)) {
      std::optional<std::uint32_t> low = EscapeAt(rest.substr(7));
      bool pair = *code < 0xDC00 && low && *low >= 0xDC00 && *low <= 0xDFFF;
      code =
          pair ? std::optional(0x10000 + ((*code - 0xD800) << 10) + (*low - 0xDC00)) : std::nullopt;
      length = 14;
    }
    if (code) {
      AppendUtf8(out, *code);
      rest.remove_prefix(length);
    } else {
      out += '_';
      rest.remove_prefix(1);
    }
  }
  out += rest;
  return out;
}

std::string EncodeXmlText(std::string_view text) { return Encode(text, false); }

std::string EncodeXmlAttribute(std::string_view text) { return Encode(text, true); }

std::string EncodeSpreadsheetText(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size() + 8);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' || (text[i] == '_' && EscapeAt(text.substr(i)))) {
      AppendEscape(escaped, static_cast<unsigned char>(text[i]));
    } else {
      escaped += text[i];
    }
  }
  return EncodeXmlText(escaped);
}

void TextPatch::Replace(std::size_t begin, std::size_t end, std::string_view replacement) {
  if (begin > end || end > original_.size()) {
    throw std::logic_error("a change to a text outside of it");
  }
  edits_.push_back({begin, end, std::string(replacement)});
}

void TextPatch::Replace(std::string_view piece, std::string_view replacement) {
  std::size_t begin = static_cast<std::size_t>(piece.data() - original_.data());
  Replace(begin, begin + piece.size(), replacement);
}

std::string TextPatch::Apply() const {
  std::vector<const Edit*> ordered;
  ordered.reserve(edits_.size());
  for (const Edit& edit : edits_) ordered.push_back(&edit);
  // Insertions at the start of a replaced piece come before its replacement.
  std::stable_sort(ordered.begin(), ordered.end(), [](const Edit* a, const Edit* b) {
    return a->begin != b->begin ? a->begin < b->begin : a->end < b->end;
  });
  std::string out;
  out.reserve(original_.size() + 64 * edits_.size());
  std::size_t at = 0;
  for (const Edit* edit : ordered) {
    if (edit->begin < at) throw std::logic_error("changes to a text overlap");
    out += original_.substr(at, edit->begin - at);
    out += edit->replacement;
    at = edit->end;
  }
  out += original_.substr(at);
  return out;
}

}  // namespace vantora::embedded
