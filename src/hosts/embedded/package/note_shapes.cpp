#include "package/note_shapes.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "package/markup_follower.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;
constexpr auto kLenient = XmlScanner::Mode::kLenient;

constexpr int kBlockSize = 1024;
// Its identifiers are still numbers that a drawing can have.
constexpr int kLargestBlock = 1 << 20;
constexpr std::string_view kIdStem = "_x0000_s";
constexpr std::string_view kNoteType = "_x0000_t202";

// A note's box, in pixels and points, and the standard columns and rows it lies on.
constexpr int kColumnPixels = 64;
constexpr int kRowPixels = 20;
constexpr int kBoxWidth = 128;
constexpr int kBoxHeight = 74;
constexpr int kGapX = 15;  // right of the cell
constexpr int kGapY = 10;  // above the cell's top
constexpr double kPointsPerPixel = 0.75;

constexpr std::string_view kNoteTypeMarkup =
    "<v:shapetype id=\"_x0000_t202\" coordsize=\"21600,21600\" o:spt=\"202\" "
    "path=\"m,l,21600r21600,l21600,xe\"><v:stroke joinstyle=\"miter\"/>"
    "<v:path gradientshapeok=\"t\" o:connecttype=\"rect\"/></v:shapetype>";

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kNamespaces = {{
    {"xmlns:v", "urn:schemas-microsoft-com:vml"},
    {"xmlns:o", "urn:schemas-microsoft-com:office:office"},
    {"xmlns:x", "urn:schemas-microsoft-com:office:excel"},
}};

std::string LayoutMarkup(int block) {
  return "<o:shapelayout v:ext=\"edit\"><o:idmap v:ext=\"edit\" data=\"" + std::to_string(block) +
         "\"/></o:shapelayout>";
}

std::vector<int> ReadBlocks(std::string_view list) {
  std::vector<int> blocks;
  while (!list.empty()) {
    std::size_t comma = std::min(list.find(','), list.size());
    std::optional<int> block = ReadNumber(list.substr(0, comma));
    if (block && *block >= 0 && *block <= kLargestBlock) blocks.push_back(*block);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return blocks;
}

std::string Points(int pixels) {
  std::array<char, 32> buffer;
  auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), pixels * kPointsPerPixel);
  return std::string(buffer.data(), end) + "pt";
}

// The place of a new note's box.
struct Box {
  int left = 0;  // in pixels
  int top = 0;
  std::string anchor;
};

Box BoxOf(CellAddress cell) {
  // At the sheet's edges the box is pushed inside.
  const int right_most = kMaxColumn * kColumnPixels - kColumnPixels - kGapX;
  const int lowest = kMaxRow * kRowPixels - 12;
  Box box;
  box.left = std::min(cell.column * kColumnPixels + kGapX, right_most - kBoxWidth);
  box.top = cell.row == 1 ? 2 : (cell.row - 1) * kRowPixels - kGapY;
  box.top = std::min(box.top, lowest - kBoxHeight);
  auto edge = [](int pixels, int unit) {
    return std::to_string(pixels / unit) + ", " + std::to_string(pixels % unit);
  };
  box.anchor = edge(box.left, kColumnPixels) + ", " + edge(box.top, kRowPixels) + ", " +
               edge(box.left + kBoxWidth, kColumnPixels) + ", " +
               edge(box.top + kBoxHeight, kRowPixels);
  return box;
}

std::string ShapeMarkup(CellAddress cell, int id, int z_index) {
  Box box = BoxOf(cell);
  return "<v:shape id=\"" + std::string(kIdStem) + std::to_string(id) +
         "\" type=\"#_x0000_t202\" style=\"position:absolute;margin-left:" + Points(box.left) +
         ";margin-top:" + Points(box.top) + ";width:" + Points(kBoxWidth) +
         ";height:" + Points(kBoxHeight) + ";z-index:" + std::to_string(z_index) +
         ";visibility:hidden\" fillcolor=\"#ffffe1\" o:insetmode=\"auto\">"
         "<v:fill color2=\"#ffffe1\"/><v:shadow on=\"t\" color=\"black\" obscured=\"t\"/>"
         "<v:path o:connecttype=\"none\"/><v:textbox style=\"mso-direction-alt:auto\">"
         "<div style=\"text-align:left\"></div></v:textbox><x:ClientData ObjectType=\"Note\">"
         "<x:MoveWithCells/><x:SizeWithCells/><x:Anchor>" +
         box.anchor + "</x:Anchor><x:AutoFill>False</x:AutoFill><x:Row>" +
         std::to_string(cell.row - 1) + "</x:Row><x:Column>" + std::to_string(cell.column - 1) +
         "</x:Column></x:ClientData></v:shape>";
}

// Moves the columns and rows of "2, 15, 6, 10, 4, 15, 10, 4".
void MoveAnchor(std::string_view anchor, int rows, int columns, TextPatch& patch) {
  for (int part = 0; !anchor.empty(); ++part) {
    std::size_t comma = std::min(anchor.find(','), anchor.size());
    std::string_view piece = TrimBlanks(anchor.substr(0, comma));
    std::optional<int> number = ReadNumber(piece);
    if (!number) return;
    const bool is_row = part % 4 == 2;
    if (part % 2 == 0) {
      int limit = is_row ? kMaxRow : kMaxColumn;
      int moved = std::clamp(*number + (is_row ? rows : columns), 0, limit - 1);
      if (moved != *number) patch.Replace(piece, std::to_string(moved));
    }
    anchor.remove_prefix(std::min(comma + 1, anchor.size()));
  }
}

}  // namespace

std::string NoteShapes::Empty(int block) {
  std::string root = "<xml";
  for (const auto& [name, uri] : kNamespaces) {
    root += " " + std::string(name) + "=\"" + std::string(uri) + "\"";
  }
  return root + ">" + LayoutMarkup(block) + "</xml>";
}

std::vector<int> NoteShapes::BlocksOf(std::string_view text) {
  XmlScanner scanner(text, kLenient);
  std::vector<int> blocks;
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() != Token::kStart || scanner.local_name() != "idmap") continue;
    std::ranges::copy(ReadBlocks(AttributeOf(scanner, "data")), std::back_inserter(blocks));
  }
  return blocks;
}

NoteShapes::NoteShapes(std::string text, std::function<int()> free_block)
    : text_(std::move(text)), patch_(text_), free_block_(std::move(free_block)) {
  XmlScanner scanner(text_, kLenient);
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() == Token::kEnd && scanner.depth() == 0) root_end_ = scanner.begin();
    if (scanner.token() != Token::kStart) continue;
    if (scanner.depth() == 0) {
      if (scanner.is_empty()) throw XmlError("a legacy drawing without content", scanner.begin());
      root_begin_ = scanner.end();
      root_name_end_ = scanner.begin() + 1 + scanner.name().size();
      for (const auto& [name, uri] : kNamespaces) {
        if (scanner.Attribute(name)) continue;
        missing_namespaces_ += " " + std::string(name) + "=\"" + std::string(uri) + "\"";
      }
      continue;
    }
    ClaimIds(scanner);
    std::string_view name = scanner.local_name();
    if (name == "idmap") {
      block_list_ = AttributeOf(scanner, "data");
      blocks_ = ReadBlocks(block_list_);
    } else if (name == "shapetype") {
      has_note_type_ = has_note_type_ || AttributeOf(scanner, "id") == kNoteType;
    } else if (scanner.depth() == 1 && name != "shapelayout") {
      ++shapes_;
      if (name == "shape") ReadShape(scanner);
    }
  }
}

void NoteShapes::ClaimIds(const XmlScanner& at) {
  for (const XmlAttribute& attribute : at.attributes()) {
    if (!attribute.value.starts_with(kIdStem)) continue;
    if (auto id = ReadNumber(attribute.value.substr(kIdStem.size()))) ids_.insert(*id);
  }
}

void NoteShapes::ReadShape(const XmlScanner& at) {
  Note note;
  bool is_note = false;
  note.id = AttributeOf(at, "id");
  note.second_id = AttributeOf(at, "o:spid");
  note.style = AttributeOf(at, "style");
  XmlScanner inner(at.document().substr(at.begin()), kLenient);
  inner.Next();
  inner.SkipElement();
  note.shape = at.document().substr(at.begin(), inner.end());
  VisitInside(at, kLenient, [&](XmlScanner& scanner) {
    std::string_view name = scanner.local_name();
    if (name == "ClientData") {
      is_note = AttributeOf(scanner, "ObjectType") == "Note";
      note.prefix = scanner.name().substr(0, scanner.name().size() - name.size());
      XmlScanner data(scanner.document().substr(scanner.begin()), kLenient);
      data.Next();
      std::string_view content = data.SkipElement();
      note.client_data_end = content.substr(content.size());
    } else if (name == "Anchor") {
      note.anchor = scanner.SkipElement();
    } else if (name == "Row") {
      note.row = TrimBlanks(scanner.SkipElement());
    } else if (name == "Column") {
      note.column = TrimBlanks(scanner.SkipElement());
    } else if (name == "Visible") {
      const std::size_t begin = scanner.begin();
      scanner.SkipElement();
      note.visible = scanner.document().substr(begin, scanner.end() - begin);
    }
  });
  std::optional<int> row = ReadNumber(note.row);
  std::optional<int> column = ReadNumber(note.column);
  if (is_note && row && column) notes_.emplace(CellAddress{*row + 1, *column + 1}, note);
}

int NoteShapes::NextId() {
  for (int block : blocks_) {
    // The first number of a block is the drawing's own.
    for (int id = std::max(next_id_, block * kBlockSize + 1); id < (block + 1) * kBlockSize; ++id) {
      if (!ids_.insert(id).second) continue;
      next_id_ = id + 1;
      return id;
    }
  }
  int block = free_block_();
  for (int own : blocks_) block = std::max(block, own + 1);
  blocks_.push_back(block);
  next_id_ = block * kBlockSize + 1;
  return NextId();
}

void NoteShapes::Add(CellAddress cell) { added_ += ShapeMarkup(cell, NextId(), ++shapes_); }

void NoteShapes::AddCopy(CellAddress from, const Note& note, CellAddress to) {
  TextPatch copy(note.shape);
  std::string id = std::string(kIdStem) + std::to_string(NextId());
  if (!note.id.empty()) copy.Replace(note.id, id);
  if (!note.second_id.empty()) copy.Replace(note.second_id, id);
  copy.Replace(note.row, std::to_string(to.row - 1));
  copy.Replace(note.column, std::to_string(to.column - 1));
  MoveAnchor(note.anchor, to.row - from.row, to.column - from.column, copy);
  added_ += copy.Apply();
  ++shapes_;
}

void NoteShapes::MoveToRow(const Note& note, int from_row, int to_row) {
  patch_.Replace(note.row, std::to_string(to_row - 1));
  MoveAnchor(note.anchor, to_row - from_row, 0, patch_);
}

void NoteShapes::SetVisible(const Note& note, bool visible) {
  constexpr std::string_view kProperty = "visibility:";
  const std::string_view value = visible ? "visible" : "hidden";
  std::size_t at = note.style.find(kProperty);
  if (at != std::string_view::npos) {
    at += kProperty.size();
    std::string_view was =
        note.style.substr(at, std::min(note.style.find(';', at), note.style.size()) - at);
    if (TrimBlanks(was) != value) patch_.Replace(was, value);
  } else if (!visible && !note.style.empty()) {
    patch_.Insert(static_cast<std::size_t>(note.style.data() - text_.data()) + note.style.size(),
                  ";visibility:hidden");
  }
  if (!visible && !note.visible.empty()) patch_.Replace(note.visible, "");
  if (visible && note.visible.empty()) {
    patch_.Replace(note.client_data_end, "<" + std::string(note.prefix) + "Visible/>");
  }
}

void NoteShapes::Remove(const Note& note) {
  patch_.Replace(note.shape, "");
  --shapes_;
}

std::string NoteShapes::Apply() {
  if (!added_.empty()) {
    if (!missing_namespaces_.empty()) patch_.Insert(root_name_end_, missing_namespaces_);
    std::string list;
    for (int block : blocks_) list += (list.empty() ? "" : ",") + std::to_string(block);
    if (block_list_.data() == nullptr) {
      patch_.Insert(root_begin_, "<o:shapelayout v:ext=\"edit\"><o:idmap v:ext=\"edit\" data=\"" +
                                     list + "\"/></o:shapelayout>");
    } else if (ReadBlocks(block_list_) != blocks_) {
      patch_.Replace(block_list_, list);
    }
    patch_.Insert(root_end_, (has_note_type_ ? "" : std::string(kNoteTypeMarkup)) + added_);
  }
  return patch_.Apply();
}

}  // namespace vantora::embedded
