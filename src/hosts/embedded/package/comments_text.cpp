#include "package/comments_text.h"

#include <algorithm>

#include "package/markup_follower.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

}  // namespace

std::string CommentsText::Empty(bool strict) {
  return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n") +
         "<comments xmlns=\"" +
         (strict ? "http://purl.oclc.org/ooxml/spreadsheetml/main"
                 : "http://schemas.openxmlformats.org/spreadsheetml/2006/main") +
         "\"><authors></authors><commentList></commentList></comments>";
}

CommentsText::CommentsText(std::string text) : text_(std::move(text)), patch_(text_) {
  XmlScanner scanner(text_);
  while (scanner.Next() != Token::kDone) {
    std::string_view name = scanner.local_name();
    const bool starts = scanner.token() == Token::kStart;
    if (!starts && scanner.token() != Token::kEnd) continue;
    if (starts && name == "comments") {
      std::string_view written = scanner.name();
      prefix_ = written.substr(0, written.size() - name.size());
    } else if (name == "authors" || name == "commentList") {
      Holder& holder = name == "authors" ? authors_holder_ : list_holder_;
      if (starts) {
        holder = {scanner.begin(), 0, scanner.end(), std::string(scanner.name())};
      } else {
        holder.inner_end = scanner.begin();
      }
    } else if (starts && name == "author") {
      authors_.push_back(scanner.ElementText());
    } else if (starts && name == "comment") {
      ReadComment(scanner);
    }
  }
  if (list_holder_.name.empty() || authors_holder_.name.empty()) {
    throw XmlError("the comments lack their list of authors or of comments", 0);
  }
}

void CommentsText::ReadComment(XmlScanner& scanner) {
  Comment comment;
  comment.begin = scanner.begin();
  std::optional<Area> place = ParseA1(AttributeOf(scanner, "ref"));
  comment.author = ReadNumber(AttributeOf(scanner, "authorId")).value_or(-1);
  VisitInside(scanner, XmlScanner::Mode::kStrict, [&](XmlScanner& inner) {
    if (inner.local_name() != "text") return;
    const std::size_t begin = inner.begin();
    inner.SkipElement();
    comment.body = inner.document().substr(begin, inner.end() - begin);
  });
  scanner.SkipElement();
  comment.end = scanner.end();
  if (place) comments_.emplace(CellAddress{place->first_row, place->first_column}, comment);
}

Namespaces CommentsText::namespaces() const {
  Namespaces declared;
  AddDeclarations(text_, declared);
  return declared;
}

std::string CommentsText::AuthorOf(const Comment& comment) const {
  if (comment.author < 0 || comment.author >= static_cast<int>(authors_.size())) return {};
  return authors_[comment.author];
}

std::string CommentsText::Body(std::string_view text) const {
  auto element = [&](std::string_view name, std::string_view attribute) {
    return "<" + Element(name) + " " + std::string(attribute) + "/>";
  };
  if (text.empty()) return "<" + Element("text") + "/>";
  return "<" + Element("text") + "><" + Element("r") + "><" + Element("rPr") + ">" +
         element("sz", "val=\"9\"") + element("color", "indexed=\"81\"") +
         element("rFont", "val=\"Tahoma\"") + element("family", "val=\"2\"") + "</" +
         Element("rPr") + "><" + Element("t") + " xml:space=\"preserve\">" +
         EncodeSpreadsheetText(text) + "</" + Element("t") + "></" + Element("r") + "></" +
         Element("text") + ">";
}

int CommentsText::AuthorNumber(std::string_view author) {
  auto found = std::ranges::find(authors_, author);
  if (found == authors_.end()) {
    new_authors_ +=
        "<" + Element("author") + ">" + EncodeXmlText(author) + "</" + Element("author") + ">";
    found = authors_.emplace(authors_.end(), author);
  }
  return static_cast<int>(found - authors_.begin());
}

void CommentsText::Put(CellAddress cell, std::string_view body, std::string_view author) {
  Remove(cell);
  added_[cell] = {std::string(body), AuthorNumber(author)};
}

void CommentsText::Remove(CellAddress cell) {
  if (added_.erase(cell) > 0) return;
  auto found = comments_.find(cell);
  if (found == comments_.end() || !removed_.insert(cell).second) return;
  patch_.Replace(found->second.begin, found->second.end, "");
}

void CommentsText::Append(const Holder& holder, const std::string& markup) {
  if (markup.empty()) return;
  if (holder.inner_end > 0) {
    patch_.Insert(holder.inner_end, markup);
  } else {
    patch_.Replace(holder.begin, holder.end,
                   "<" + holder.name + ">" + markup + "</" + holder.name + ">");
  }
}

std::string CommentsText::Apply() {
  Append(authors_holder_, new_authors_);
  std::string at_end;
  for (const auto& [cell, content] : added_) {
    std::string markup = "<" + Element("comment") + " ref=\"" + ToA1(cell) + "\" authorId=\"" +
                         std::to_string(content.second) + "\">" + content.first + "</" +
                         Element("comment") + ">";
    auto after = comments_.upper_bound(cell);
    if (after != comments_.end()) {
      patch_.Insert(after->second.begin, markup);
    } else {
      at_end += markup;
    }
  }
  Append(list_holder_, at_end);
  return patch_.Apply();
}

}  // namespace vantora::embedded
