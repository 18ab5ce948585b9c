#include "package/move_rows.h"

#include "package/xml_scanner.h"

namespace vantora::embedded {

std::optional<CellAddress> RowMoves::Of(CellAddress cell) const {
  if (!area.Contains(cell)) return std::nullopt;
  auto moved = rows.find(cell.row);
  if (moved == rows.end()) return std::nullopt;
  return CellAddress{moved->second, cell.column};
}

std::optional<std::string> MoveReferences(std::string_view text, std::string_view element,
                                          const RowMoves& moves) {
  TextPatch patch(text);
  XmlScanner scanner(text);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart || scanner.local_name() != element) continue;
    std::optional<std::string_view> ref = scanner.Attribute("ref");
    std::optional<Area> area = ref ? ParseA1(*ref) : std::nullopt;
    if (!area || area->rows() > 1 || area->columns() > 1) continue;
    if (auto cell = moves.Of({area->first_row, area->first_column})) {
      patch.Replace(*ref, ToA1(*cell));
    }
  }
  if (patch.empty()) return std::nullopt;
  return patch.Apply();
}

void MoveHyperlinks(SheetMarkup& markup, const RowMoves& moves) {
  MarkupElement* links = markup.Find("hyperlinks");
  if (!links) return;
  if (auto text = MoveReferences(links->text, "hyperlink", moves)) {
    links->text = std::move(*text);
    markup.changed = true;
  }
}

}  // namespace vantora::embedded
