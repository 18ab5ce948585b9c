#include "package/comments.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "package/comments_text.h"
#include "package/markup_follower.h"
#include "package/namespaces.h"
#include "package/note_shapes.h"

namespace vantora::embedded {
namespace {

// What `read` gives; its errors name the part.
template <typename Read>
auto Reading(const std::string& part, Read&& read) {
  try {
    return read();
  } catch (const XmlError& error) {
    ThrowDamaged(part, error);
  }
}

constexpr std::string_view kRelationships =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr std::string_view kStrictRelationships =
    "http://purl.oclc.org/ooxml/officeDocument/relationships";
constexpr std::string_view kCommentsContentType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.comments+xml";
constexpr std::string_view kVmlContentType =
    "application/vnd.openxmlformats-officedocument.vmlDrawing";
// Comments that stand for a conversation have an author of this form.
constexpr std::string_view kConversationAuthor = "tc={";

const Relationship* FindRelationship(const OpcPackage& package, std::string_view part,
                                     std::string_view kind) {
  for (const Relationship& relationship : package.RelationshipsOf(part)) {
    if (relationship.IsType(kind) && !relationship.external) return &relationship;
  }
  return nullptr;
}

// The prefix that the root declares for relationship ids, "" for none.
std::string RelationshipPrefix(std::string_view root, std::string_view uri) {
  XmlScanner scanner(root);
  while (scanner.Next() != XmlScanner::Token::kStart) {
  }
  for (const XmlAttribute& attribute : scanner.attributes()) {
    if (attribute.name.starts_with("xmlns:") && attribute.value == uri) {
      return std::string(LocalName(attribute.name));
    }
  }
  return {};
}

// A block of identifiers that no legacy drawing of the package claims.
int FreeBlock(const OpcPackage& package) {
  int last = 0;
  for (const std::string& part : package.PartNames()) {
    if (!part.ends_with(".vml")) continue;
    Reading(part, [&] {
      for (int block : NoteShapes::BlocksOf(package.Read(part))) last = std::max(last, block);
    });
  }
  return last + 1;
}

}  // namespace

// One call's work on both parts: opened on need, written by Finish.
class SheetComments::Edit {
 public:
  explicit Edit(SheetComments& owner)
      : package_(owner.package_), markup_(owner.markup_), sheet_(owner.sheet_part_) {
    strict_ = markup_.start.find(kStrictRelationships) != std::string::npos;
    if (const Relationship* found = FindRelationship(package_, sheet_, "comments")) {
      comments_part_ = found->target;
      comments_relationship_ = found->id;
      comments_ = Reading(comments_part_, [&] {
        return std::make_unique<CommentsText>(package_.Read(comments_part_));
      });
    }
    OpenDrawing();
  }

  // Null when there are none.
  CommentsText* comments() { return comments_.get(); }
  NoteShapes* shapes() { return shapes_.get(); }

  CommentsText& NeedComments() {
    if (comments_) return *comments_;
    comments_part_ = package_.FreePartName("xl/comments", ".xml");
    package_.Write(comments_part_, CommentsText::Empty(strict_));
    package_.SetContentType(comments_part_, kCommentsContentType);
    comments_relationship_ = package_.AddRelationship(sheet_, Type("comments"), comments_part_);
    comments_ = std::make_unique<CommentsText>(package_.Read(comments_part_));
    return *comments_;
  }

  NoteShapes& NeedShapes() {
    if (shapes_) return *shapes_;
    vml_part_ = package_.FreePartName("xl/drawings/vmlDrawing", ".vml");
    std::string text = NoteShapes::Empty(FreeBlock(package_));
    package_.Write(vml_part_, text);
    package_.EnsureDefaultContentType("vml", kVmlContentType);
    vml_relationship_ = package_.AddRelationship(sheet_, Type("vmlDrawing"), vml_part_);
    AddLegacyDrawing();
    shapes_ = MakeShapes(std::move(text));
    return *shapes_;
  }

  void RemoveComments(const Area& area) {
    if (comments_) {
      for (const auto& [cell, comment] : comments_->comments()) {
        if (area.Contains(cell)) comments_->Remove(cell);
      }
    }
    if (!shapes_) return;
    for (const auto& [cell, note] : shapes_->notes()) {
      if (area.Contains(cell)) shapes_->Remove(note);
    }
  }

  void Finish() {
    if (comments_ && comments_->changed()) {
      if (comments_->count() > 0) {
        package_.Write(comments_part_, comments_->Apply());
      } else {
        RemovePart(comments_part_, comments_relationship_);
      }
    }
    if (!shapes_ || !shapes_->changed()) return;
    if (shapes_->has_shapes() || !package_.RelationshipsOf(vml_part_).empty()) {
      package_.Write(vml_part_, shapes_->Apply());
    } else {
      RemovePart(vml_part_, vml_relationship_);
      markup_.Remove("legacyDrawing");
    }
  }

 private:
  std::string Type(std::string_view kind) const {
    return std::string(strict_ ? kStrictRelationships : kRelationships) + "/" + std::string(kind);
  }

  std::unique_ptr<NoteShapes> MakeShapes(std::string text) {
    return std::make_unique<NoteShapes>(std::move(text), [this] { return FreeBlock(package_); });
  }

  void OpenDrawing() {
    const MarkupElement* element = markup_.Find("legacyDrawing");
    if (!element) return;
    XmlScanner scanner(element->text);
    while (scanner.Next() != XmlScanner::Token::kStart) {
    }
    for (const XmlAttribute& attribute : scanner.attributes()) {
      if (LocalName(attribute.name) == "id") vml_relationship_ = DecodeXml(attribute.value);
    }
    for (const Relationship& relationship : package_.RelationshipsOf(sheet_)) {
      if (relationship.id == vml_relationship_) vml_part_ = relationship.target;
    }
    if (!package_.Has(vml_part_)) return;
    shapes_ = Reading(vml_part_, [&] { return MakeShapes(package_.Read(vml_part_)); });
  }

  void AddLegacyDrawing() {
    std::string_view uri = strict_ ? kStrictRelationships : kRelationships;
    std::string prefix = RelationshipPrefix(markup_.start, uri);
    std::string declaration;
    if (prefix.empty()) {
      prefix = "r";
      declaration = " xmlns:r=\"" + std::string(uri) + "\"";
    }
    markup_.FindOrInsert("legacyDrawing").text = "<" + markup_.prefix + "legacyDrawing" +
                                                 declaration + " " + prefix + ":id=\"" +
                                                 vml_relationship_ + "\"/>";
    markup_.changed = true;
  }

  void RemovePart(const std::string& part, const std::string& relationship) {
    package_.RemoveRelationship(sheet_, relationship);
    package_.RemoveContentType(part);
    package_.Remove(part);
  }

  OpcPackage& package_;
  SheetMarkup& markup_;
  const std::string& sheet_;
  bool strict_ = false;
  std::string comments_part_;
  std::string comments_relationship_;
  std::unique_ptr<CommentsText> comments_;
  std::string vml_part_;
  std::string vml_relationship_;
  std::unique_ptr<NoteShapes> shapes_;
};

namespace {

// Takes the conversations of an area out of a sheet's part of them.
void ClearConversations(OpcPackage& package, const std::string& sheet, const Area& area) {
  const Relationship* found = FindRelationship(package, sheet, "threadedComment");
  if (!found || !package.Has(found->target)) return;
  const Relationship relationship = *found;
  std::string text = package.Read(relationship.target);
  TextPatch patch(text);
  int left = 0;
  XmlScanner scanner(text);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart) continue;
    if (scanner.local_name() != "threadedComment") continue;
    std::optional<Area> place = ParseA1(AttributeOf(scanner, "ref"));
    const std::size_t begin = scanner.begin();
    scanner.SkipElement();
    if (place && place->Intersects(area)) {
      patch.Replace(begin, scanner.end(), "");
    } else {
      ++left;
    }
  }
  if (patch.empty()) return;
  if (left > 0) {
    package.Write(relationship.target, patch.Apply());
    return;
  }
  package.RemoveRelationship(sheet, relationship.id);
  package.RemoveContentType(relationship.target);
  package.Remove(relationship.target);
}

}  // namespace

bool SheetComments::Has(CellAddress cell) const {
  const Relationship* found = FindRelationship(package_, sheet_part_, "comments");
  return found && Reading(found->target, [&] {
           return CommentsText(package_.Read(found->target)).comments().contains(cell);
         });
}

std::vector<CellAddress> SheetComments::Cells() {
  std::vector<CellAddress> cells;
  Edit edit(*this);
  if (edit.comments()) {
    for (const auto& [cell, comment] : edit.comments()->comments()) cells.push_back(cell);
  }
  if (edit.shapes()) {
    for (const auto& [cell, note] : edit.shapes()->notes()) cells.push_back(cell);
  }
  if (const Relationship* found = FindRelationship(package_, sheet_part_, "threadedComment")) {
    const std::string text = package_.Read(found->target);
    XmlScanner scanner(text);
    while (scanner.Next() != XmlScanner::Token::kDone) {
      if (scanner.token() != XmlScanner::Token::kStart) continue;
      if (auto place = ParseA1(AttributeOf(scanner, "ref"))) {
        cells.push_back({place->first_row, place->first_column});
      }
    }
  }
  return cells;
}

void SheetComments::Add(CellAddress cell) {
  Edit edit(*this);
  CommentsText& comments = edit.NeedComments();
  comments.Put(cell, comments.Body(""), "");
  NoteShapes& shapes = edit.NeedShapes();
  if (!shapes.notes().contains(cell)) shapes.Add(cell);
  edit.Finish();
}

void SheetComments::SetText(CellAddress cell, std::string_view text) {
  Edit edit(*this);
  CommentsText& comments = edit.NeedComments();
  auto found = comments.comments().find(cell);
  if (found == comments.comments().end()) {
    throw std::logic_error("the text of a comment that is not there");
  }
  const CommentsText::Comment& comment = found->second;
  if (comment.body.data()) {
    comments.SetBody(comment, comments.Body(text));
  } else {
    comments.Put(cell, comments.Body(text), comments.AuthorOf(comment));
  }
  edit.Finish();
}

void SheetComments::SetVisible(CellAddress cell, bool visible) {
  auto has_box = [&](Edit& edit) { return edit.shapes() && edit.shapes()->notes().contains(cell); };
  if (Edit edit(*this); !has_box(edit)) {
    // Some programs leave the boxes out; a hidden comment does not need one.
    if (!visible) return;
    edit.NeedShapes().Add(cell);
    edit.Finish();
  }
  Edit edit(*this);
  edit.shapes()->SetVisible(edit.shapes()->notes().at(cell), visible);
  edit.Finish();
}

void SheetComments::Clear(const Area& area) {
  Edit edit(*this);
  edit.RemoveComments(area);
  edit.Finish();
  ClearConversations(package_, sheet_part_, area);
}

void SheetComments::MoveRows(const RowMoves& moves) {
  constexpr std::pair<std::string_view, std::string_view> kParts[] = {
      {"comments", "comment"}, {"threadedComment", "threadedComment"}};
  for (const auto& [kind, element] : kParts) {
    const Relationship* found = FindRelationship(package_, sheet_part_, kind);
    if (!found || !package_.Has(found->target)) continue;
    const std::string part = found->target;
    if (auto text = MoveReferences(package_.Read(part), element, moves)) {
      package_.Write(part, std::move(*text));
    }
  }
  Edit edit(*this);
  if (!edit.shapes()) return;
  for (const auto& [cell, note] : edit.shapes()->notes()) {
    if (auto moved = moves.Of(cell)) edit.shapes()->MoveToRow(note, cell.row, moved->row);
  }
  edit.Finish();
}

void SheetComments::CopyComments(Edit& from_edit, Edit& to_edit, const Area& from, const Area& to) {
  const CommentsText* comments = from_edit.comments();
  if (!comments) return;
  const int rows = to.first_row - from.first_row;
  const int columns = to.first_column - from.first_column;
  const Namespaces declared = comments->namespaces();
  for (const auto& [cell, comment] : comments->comments()) {
    if (!from.Contains(cell)) continue;
    const CellAddress target{cell.row + rows, cell.column + columns};
    std::string author = comments->AuthorOf(comment);
    if (author.starts_with(kConversationAuthor)) author.clear();
    CommentsText& copies = to_edit.NeedComments();
    copies.Put(target,
               comment.body.data() ? Transplanted(comment.body, declared, copies.namespaces())
                                   : copies.Body(""),
               author);
    NoteShapes& boxes = to_edit.NeedShapes();
    const NoteShapes* shapes = from_edit.shapes();
    const bool has_box = shapes && shapes->notes().contains(cell);
    if (has_box && (shapes == &boxes || NoteShapes::StandsAlone(shapes->notes().at(cell)))) {
      boxes.AddCopy(cell, shapes->notes().at(cell), target);
    } else {
      boxes.Add(target);
    }
  }
}

void SheetComments::Paste(const Area& from, const Area& to) {
  Edit edit(*this);
  edit.RemoveComments(to);
  CopyComments(edit, edit, from, to);
  edit.Finish();
  ClearConversations(package_, sheet_part_, to);
}

void SheetComments::PasteFrom(SheetComments& source, const Area& from, const Area& to) {
  Edit edit(*this);
  Edit source_edit(source);
  edit.RemoveComments(to);
  CopyComments(source_edit, edit, from, to);
  edit.Finish();
  ClearConversations(package_, sheet_part_, to);
}

}  // namespace vantora::embedded
