#include "package/xml_scanner.h"

#include <algorithm>
#include <cstring>

#include "package/file_limits.h"

namespace vantora::embedded {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool EndsName(char c) { return IsBlank(c) || c == '/' || c == '>' || c == '='; }

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

// The character of "#65" or "#x41"; nullopt when it is none.
std::optional<std::uint32_t> CharacterReference(std::string_view body) {
  body.remove_prefix(1);
  bool hex = !body.empty() && body.front() == 'x';
  if (hex) body.remove_prefix(1);
  if (body.empty() || body.size() > 8) return std::nullopt;
  std::uint32_t code = 0;
  for (char c : body) {
    int digit = HexDigit(c);
    if (digit < 0 || (!hex && digit > 9)) return std::nullopt;
    code = code * (hex ? 16 : 10) + static_cast<std::uint32_t>(digit);
  }
  if (code == 0 || code > 0x10FFFF || IsSurrogate(code)) return std::nullopt;
  return code;
}

// Appends what the entity (without "&" and ";") stands for; false when it is unknown.
bool AppendEntity(std::string& out, std::string_view body) {
  if (body == "lt") {
    out += '<';
  } else if (body == "gt") {
    out += '>';
  } else if (body == "amp") {
    out += '&';
  } else if (body == "quot") {
    out += '"';
  } else if (body == "apos") {
    out += '\'';
  } else if (!body.empty() && body.front() == '#') {
    std::optional<std::uint32_t> code = CharacterReference(body);
    if (!code) return false;
    AppendUtf8(out, *code);
  } else {
    return false;
  }
  return true;
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

std::string Encode(std::string_view text, bool attribute) {
  std::string out;
  out.reserve(text.size() + 8);
  for (char c : text) {
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
        out += c;
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
  if (document_.starts_with("\xEF\xBB\xBF")) position_ = 3;
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
  return token_ = Token::kText;
}

XmlScanner::Token XmlScanner::ReadStartTag() {
  const char* const data = document_.data();
  const std::size_t size = document_.size();
  std::size_t at = begin_ + 1;
  if (!IsNameStart(data[at])) Fail("a \"<\" that begins no tag", begin_);
  while (at < size && !EndsName(data[at])) ++at;
  name_ = document_.substr(begin_ + 1, at - begin_ - 1);
  const std::size_t body = at;
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
  is_empty_ = at > body && data[at - 1] == '/';
  tag_body_ = document_.substr(body, at - body - (is_empty_ ? 1 : 0));
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
  if (opening == "<![CDATA[") {
    if (open_.empty()) Fail("text outside the root element", begin_);
    text_ = rest.substr(opening.size(), close - opening.size());
    is_cdata_ = true;
    return token_ = Token::kText;
  }
  if (rest.starts_with("<?xml") && rest.size() > 5 && IsBlank(rest[5])) {
    CheckEncoding(rest.substr(5, close - 5));
  }
  return token_ = Token::kOther;
}

void XmlScanner::CheckEncoding(std::string_view declaration) const {
  std::size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return;
  std::size_t quote = declaration.find_first_of("\"'", at);
  if (quote == std::string_view::npos) return;
  std::size_t close = declaration.find(declaration[quote], quote + 1);
  if (close == std::string_view::npos) return;
  std::string_view encoding = declaration.substr(quote + 1, close - quote - 1);
  for (std::string_view known : {"UTF-8", "UTF8", "US-ASCII", "ASCII"}) {
    if (EqualsIgnoringCase(encoding, known)) return;
  }
  Fail("the encoding " + Quoted(encoding) + ", where only UTF-8 can be read", begin_);
}

const std::vector<XmlAttribute>& XmlScanner::attributes() const {
  if (attributes_read_) return attributes_;
  attributes_.clear();
  if (token_ != Token::kStart) return attributes_;
  std::string_view body = tag_body_;
  std::size_t at = 0;
  auto skip_blanks = [&] {
    while (at < body.size() && IsBlank(body[at])) ++at;
  };
  auto place = [&] { return static_cast<std::size_t>(body.data() - document_.data()) + at; };
  for (skip_blanks(); at < body.size(); skip_blanks()) {
    const std::size_t start = at;
    while (at < body.size() && !EndsName(body[at])) ++at;
    std::string_view name = body.substr(start, at - start);
    skip_blanks();
    if (name.empty() || !IsNameStart(name.front()) || at >= body.size() || body[at] != '=') {
      Fail("a malformed attribute in the tag " + Quoted(name_), place());
    }
    ++at;
    skip_blanks();
    if (at >= body.size() || (body[at] != '"' && body[at] != '\'')) {
      Fail("the attribute " + Quoted(name) + " has no quotes", place());
    }
    // Next saw pairs of quotes; one within a name leaves another without its partner.
    const std::size_t close = body.find(body[at], at + 1);
    if (close == std::string_view::npos) {
      Fail("the attribute " + Quoted(name) + " lacks its closing quote", place());
    }
    attributes_.push_back({name, body.substr(at + 1, close - at - 1)});
    at = close + 1;
    if (at < body.size() && !IsBlank(body[at]) && mode_ == Mode::kStrict) {
      Fail("no blank after the attribute " + Quoted(name), place());
    }
  }
  attributes_read_ = true;
  return attributes_;
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
    std::size_t semicolon = raw.substr(0, std::min(raw.size(), special + 12)).find(';', from);
    if (semicolon != std::string_view::npos &&
        AppendEntity(out, raw.substr(from, semicolon - from))) {
      from = semicolon + 1;
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
    unsigned char c = static_cast<unsigned char>(text[i]);
    std::string_view rest = text.substr(i);
    if ((c < 0x20 && c != '\t' && c != '\n') || (c == '_' && EscapeAt(rest))) {
      AppendEscape(escaped, c);
    } else if (rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF")) {
      AppendEscape(escaped, static_cast<unsigned char>(rest[2]) == 0xBE ? 0xFFFE : 0xFFFF);
      i += 2;
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
