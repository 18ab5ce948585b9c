// The text of a legacy drawing with its comments' boxes: read once, edits gathered, written once.
// Other shapes (form controls) stay as they are.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cells/address.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

class NoteShapes {
 public:
  // A comment's box, as views into the text.
  struct Note {
    std::string_view shape;
    std::string_view id;
    std::string_view second_id;  // o:spid, empty when absent
    std::string_view style;
    std::string_view anchor;
    std::string_view row;
    std::string_view column;
    std::string_view visible;          // the element <x:Visible>, empty when absent
    std::string_view client_data_end;  // where its end tag begins
    std::string_view prefix;           // of the client data's elements, with its colon
  };
  using Notes = std::map<CellAddress, Note>;

  // A drawing without shapes, with identifiers from `block` * 1024 on.
  static std::string Empty(int block);
  // Blocks of identifiers that a drawing's text claims.
  static std::vector<int> BlocksOf(std::string_view text);

  // `free_block` gives a block that no drawing of the package claims. Throws XmlError.
  NoteShapes(std::string text, std::function<int()> free_block);
  NoteShapes(const NoteShapes&) = delete;
  NoteShapes& operator=(const NoteShapes&) = delete;

  // Those of the text as it was read.
  const Notes& notes() const { return notes_; }

  // A hidden box right of the cell, as Excel places it among columns and rows of standard size.
  void Add(CellAddress cell);
  void AddCopy(CellAddress from, const Note& note, CellAddress to);
  void SetVisible(const Note& note, bool visible);
  void Remove(const Note& note);
  void MoveToRow(const Note& note, int from_row, int to_row);

  // Shapes of any kind are left after the edits.
  bool has_shapes() const { return shapes_ > 0; }
  bool changed() const { return !patch_.empty() || !added_.empty(); }
  std::string Apply();

 private:
  void ReadShape(const XmlScanner& at);
  void ClaimIds(const XmlScanner& at);
  int NextId();

  std::string text_;
  TextPatch patch_;
  std::function<int()> free_block_;
  Notes notes_;
  std::vector<int> blocks_;
  std::string_view block_list_;  // value of the attribute
  std::size_t root_begin_ = 0;   // where the root's content begins
  std::size_t root_end_ = 0;     // and ends
  std::size_t root_name_end_ = 0;
  std::string missing_namespaces_;
  bool has_note_type_ = false;
  std::set<int> ids_;
  int next_id_ = 0;
  int shapes_ = 0;
  std::string added_;
};

}  // namespace vantora::embedded
