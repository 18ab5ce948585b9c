// Reads XML where it stands. Sheets are read as a stream through it, and every change to a part is
// a patch of the text at the places that it reports, so that what no edit concerns keeps its bytes:
// quotes, blanks, order, unknown elements. (A document tree would not know the places.)
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "package/file_error.h"

namespace vantora::embedded {

// A part that can't be read, at a byte offset: not well-formed unless `code` says otherwise.
// Whoever knows the part's name says it (ThrowDamaged).
class XmlError : public FileError {
 public:
  XmlError(const std::string& what, std::size_t offset, Code code = Code::kMalformedXml)
      : FileError(code, what, {}, "byte " + std::to_string(offset)), offset_(offset) {}
  std::size_t offset() const { return offset_; }

 private:
  std::size_t offset_;
};

struct XmlAttribute {
  std::string_view name;   // as written, with its prefix
  std::string_view value;  // raw: entities not resolved; its place in the document is its address
};

// The name without its prefix: "row" for "xdr:row".
std::string_view LocalName(std::string_view name);

// A pull scanner over a UTF-8 document (with or without byte order mark) that must outlive it. Its
// characters are taken to be ones that XML can have (OpcPackage::Read sees to it).
// Refuses what is not well-formed, document type declarations, encodings other than UTF-8 and
// elements nested too deep; prefixes need no declaration. With `kLenient`, an end tag that matches
// an outer element closes the inner ones, unclosed <br> passes, and texts, attributes and comments
// are not looked into before they are asked for (legacy drawings are written so).
class XmlScanner {
 public:
  enum class Token { kStart, kEnd, kText, kOther, kDone };
  enum class Mode { kStrict, kLenient };

  explicit XmlScanner(std::string_view document, Mode mode = Mode::kStrict);

  // Moves to the next token. An empty element <a/> comes as kStart with is_empty(), without a kEnd.
  // kOther: declarations, comments, processing instructions; CDATA comes as kText with is_cdata().
  // Throws XmlError.
  Token Next();
  Token token() const { return token_; }

  // Of a start or end tag: name as written, and without its prefix.
  std::string_view name() const { return name_; }
  std::string_view local_name() const { return LocalName(name_); }
  bool is_empty() const { return is_empty_; }
  // Of a start tag, in order; valid until Next.
  const std::vector<XmlAttribute>& attributes() const;
  // Raw value of the attribute of that name as written; nullopt when it is absent.
  std::optional<std::string_view> Attribute(std::string_view name) const;
  // Of text: as it stands (entities not resolved; the inside of CDATA).
  std::string_view text() const { return text_; }
  bool is_cdata() const { return is_cdata_; }

  // Place of the token in the document: [begin, end).
  std::size_t begin() const { return begin_; }
  std::size_t end() const { return end_; }
  std::string_view document() const { return document_; }
  // Number of elements open around the token; for a start tag without counting itself.
  std::size_t depth() const;
  // From a non-empty start tag: moves past its end tag and returns the raw text between. From an
  // empty one: "".
  std::string_view SkipElement();
  // Same, decoded, for an element that holds text only (text of inner elements is joined).
  std::string ElementText();

 private:
  Token Finish();
  Token ReadText();
  Token ReadStartTag();
  Token ReadEndTag();
  Token ReadSpecial();
  void CheckText() const;
  // Of the reference at `at`, which must be one.
  std::size_t ReferenceLength(std::size_t at) const;
  // Both from the end of the tag's name; return the place of its ">".
  std::size_t ReadAttributes() const;
  std::size_t SkipAttributes() const;
  // Returns the place behind the attribute.
  std::size_t ReadAttribute(std::size_t at) const;
  void CheckNamesDiffer() const;
  void CheckInstruction(std::string_view inside) const;
  void CheckDeclaration(std::string_view declaration) const;
  void CheckEncoding(std::string_view encoding) const;
  [[noreturn]] void Fail(const std::string& what, std::size_t offset) const;

  std::string_view document_;
  Mode mode_;
  Token token_ = Token::kDone;
  std::size_t position_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::string_view name_;
  std::string_view text_;
  std::size_t name_end_ = 0;  // of a start tag
  bool is_empty_ = false;
  bool is_cdata_ = false;
  bool root_seen_ = false;
  std::vector<std::string_view> open_;
  mutable std::vector<XmlAttribute> attributes_;
  mutable bool attributes_read_ = false;
};

// Resolves references to characters (one that stands for none stays as it is).
std::string DecodeXml(std::string_view raw);
// As DecodeXml, then the _xHHHH_ escapes that spreadsheet texts use for what XML can't hold.
std::string DecodeSpreadsheetText(std::string_view raw);
// For both: characters that XML can't hold come out as _xHHHH_.
std::string EncodeXmlText(std::string_view text);
std::string EncodeXmlAttribute(std::string_view text);
// As EncodeXmlText, with _xHHHH_ for carriage returns and for a literal "_xHHHH_" as well.
std::string EncodeSpreadsheetText(std::string_view text);

// Changes to a text at places of the text as it was. Places must not overlap; any order.
class TextPatch {
 public:
  explicit TextPatch(std::string_view original) : original_(original) {}

  void Replace(std::size_t begin, std::size_t end, std::string_view replacement);
  // `piece` is a view into the original (an attribute's value, a text).
  void Replace(std::string_view piece, std::string_view replacement);
  void Insert(std::size_t at, std::string_view text) { Replace(at, at, text); }
  bool empty() const { return edits_.empty(); }
  std::string Apply() const;

 private:
  struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string replacement;
  };
  std::string_view original_;
  std::vector<Edit> edits_;
};

}  // namespace vantora::embedded
