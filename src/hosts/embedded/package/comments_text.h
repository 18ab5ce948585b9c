// The text of a comments part: read once, edits gathered, written once.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cells/address.h"
#include "package/namespaces.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

class CommentsText {
 public:
  struct Comment {
    std::size_t begin = 0;
    std::size_t end = 0;
    // The <text> element.
    std::string_view body;
    int author = -1;
  };
  using Comments = std::map<CellAddress, Comment>;

  // An empty part; `strict` for the strict form's namespace.
  static std::string Empty(bool strict);

  // Throws XmlError.
  explicit CommentsText(std::string text);
  // Its views stand in its own text.
  CommentsText(const CommentsText&) = delete;
  CommentsText& operator=(const CommentsText&) = delete;

  // Those of the text as it was read, by row and column.
  const Comments& comments() const { return comments_; }
  // Declared around the comments.
  Namespaces namespaces() const;
  // Decoded; "" when there is none of that number.
  std::string AuthorOf(const Comment& comment) const;
  // A <text> element with one run as Excel gives a comment that a macro adds.
  std::string Body(std::string_view text) const;

  // `body` is a <text> element. What stood in the cell is replaced.
  void Put(CellAddress cell, std::string_view body, std::string_view author);
  void SetBody(const Comment& comment, std::string_view body) {
    patch_.Replace(comment.body, body);
  }
  // Nothing when the cell has none (left).
  void Remove(CellAddress cell);

  // Comments left after the edits.
  std::size_t count() const { return comments_.size() - removed_.size() + added_.size(); }
  bool changed() const { return !patch_.empty() || !added_.empty(); }
  std::string Apply();

 private:
  // An element that holds others, as a place to add one.
  struct Holder {
    std::size_t begin = 0;
    // Where its end tag begins; 0 for an empty element.
    std::size_t inner_end = 0;
    std::size_t end = 0;
    std::string name;
  };

  void ReadComment(XmlScanner& scanner);
  // Adds to a holder, which opens when it was empty.
  void Append(const Holder& holder, const std::string& markup);
  std::string Element(std::string_view name) const { return prefix_ + std::string(name); }
  int AuthorNumber(std::string_view author);

  std::string text_;
  TextPatch patch_;
  std::string prefix_;
  Holder authors_holder_;
  Holder list_holder_;
  std::vector<std::string> authors_;
  std::string new_authors_;
  Comments comments_;
  std::map<CellAddress, std::pair<std::string, int>> added_;
  std::set<CellAddress> removed_;
};

}  // namespace vantora::embedded
