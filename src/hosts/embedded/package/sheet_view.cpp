#include "package/sheet_view.h"

#include <algorithm>
#include <charconv>

#include "package/area_list.h"
#include "package/cell_patch.h"
#include "package/sheet_reader.h"
#include "package/sheet_writer.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

struct Piece {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool exists() const { return end > begin; }
};

// The places of one <sheetView>, in the text that holds it.
struct ViewPlaces {
  Piece element, tag;
  std::string name;
  bool is_empty = false;
  int window = 0;
  // Values of attributes; data of absent ones is null.
  std::string_view window_id, tab_selected, top_left;

  Piece pane;
  bool pane_is_empty = false;
  std::string_view pane_top_left, state, active_pane;
  double split_columns = 0;
  double split_rows = 0;

  struct Selection {
    Piece piece;
    std::string_view pane, active_cell, areas;
  };
  std::vector<Selection> selections;

  const Selection* ActiveSelection() const {
    std::string_view active = active_pane.data() ? active_pane : "topLeft";
    auto found = std::ranges::find_if(selections, [&](const Selection& selection) {
      return (selection.pane.data() ? selection.pane : "topLeft") == active;
    });
    return found == selections.end() ? nullptr : &*found;
  }
};

template <typename Number>
Number NumberOr(std::string_view text, Number otherwise) {
  Number number{};
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return text.empty() || error != std::errc() ? otherwise : number;
}

std::string_view AttributeOf(const XmlScanner& xml, std::string_view name) {
  return xml.Attribute(name).value_or(std::string_view());
}

void ReadPane(XmlScanner& xml, ViewPlaces& places) {
  places.split_columns = NumberOr<double>(AttributeOf(xml, "xSplit"), 0);
  places.split_rows = NumberOr<double>(AttributeOf(xml, "ySplit"), 0);
  places.pane_top_left = AttributeOf(xml, "topLeftCell");
  places.state = AttributeOf(xml, "state");
  places.active_pane = AttributeOf(xml, "activePane");
  places.pane_is_empty = xml.is_empty();
  places.pane.begin = xml.begin();
  xml.SkipElement();
  places.pane.end = xml.end();
}

// The scanner stands at the start tag of a <sheetView>.
ViewPlaces ReadPlaces(XmlScanner& xml) {
  ViewPlaces places;
  places.element.begin = xml.begin();
  places.tag = {xml.begin(), xml.end()};
  places.name = xml.name();
  places.is_empty = xml.is_empty();
  places.window_id = AttributeOf(xml, "workbookViewId");
  places.window = NumberOr(places.window_id, 0);
  places.tab_selected = AttributeOf(xml, "tabSelected");
  places.top_left = AttributeOf(xml, "topLeftCell");
  while (!places.is_empty && xml.Next() != Token::kEnd) {
    if (xml.token() != Token::kStart) continue;
    if (xml.local_name() == "pane") {
      ReadPane(xml, places);
      continue;
    }
    const bool is_selection = xml.local_name() == "selection";
    ViewPlaces::Selection selection{{xml.begin(), 0},
                                    AttributeOf(xml, "pane"),
                                    AttributeOf(xml, "activeCell"),
                                    AttributeOf(xml, "sqref")};
    xml.SkipElement();
    selection.piece.end = xml.end();
    if (is_selection) places.selections.push_back(selection);
  }
  places.element.end = xml.end();
  return places;
}

std::vector<ViewPlaces> ReadAllPlaces(const std::string& text) {
  std::vector<ViewPlaces> views;
  XmlScanner xml(text);
  while (xml.Next() != Token::kDone) {
    if (xml.token() == Token::kStart && xml.local_name() == "sheetView") {
      views.push_back(ReadPlaces(xml));
    }
  }
  return views;
}

CellAddress CellOf(std::string_view text, CellAddress otherwise = {}) {
  std::optional<Area> area = ParseA1(text);
  return area ? CellAddress{area->first_row, area->first_column} : otherwise;
}

SheetView ViewOf(const ViewPlaces& places) {
  SheetView view;
  view.top_left = view.scrolled = CellOf(places.top_left);
  if (places.pane.exists() && (places.split_columns > 0 || places.split_rows > 0)) {
    const bool frozen = places.state == "frozen" || places.state == "frozenSplit";
    view.panes = frozen ? SheetView::Panes::kFrozen : SheetView::Panes::kSplit;
    view.split_columns = std::max(places.split_columns, 0.0);
    view.split_rows = std::max(places.split_rows, 0.0);
    CellAddress next = view.top_left;
    if (frozen) {
      next.row = std::min(next.row + static_cast<int>(view.split_rows), kMaxRow);
      next.column = std::min(next.column + static_cast<int>(view.split_columns), kMaxColumn);
    }
    const CellAddress scrolled = CellOf(places.pane_top_left, next);
    if (view.has_lower_panes()) view.scrolled.row = scrolled.row;
    if (view.has_right_panes()) view.scrolled.column = scrolled.column;
  }
  if (const ViewPlaces::Selection* selection = places.ActiveSelection()) {
    std::string_view areas = selection->areas.data() ? selection->areas : "A1";
    view.selection = ParseAreas(areas);
    if (view.selection.empty()) view.selection.emplace_back();
    view.active_cell = CellOf(selection->active_cell);
  }
  return view;
}

std::string ActivePaneOf(const SheetView& view) {
  if (view.has_lower_panes()) return view.has_right_panes() ? "bottomRight" : "bottomLeft";
  return view.has_right_panes() ? "topRight" : "topLeft";
}

std::string SelectionElement(const std::string& prefix, std::string_view pane,
                             CellAddress active_cell, const std::vector<Area>& areas) {
  std::string text = "<" + prefix + "selection";
  if (pane != "topLeft") text += " pane=\"" + std::string(pane) + "\"";
  return text + " activeCell=\"" + ToA1(active_cell) + "\" sqref=\"" + ToSqref(areas) + "\"/>";
}

std::string PaneElement(const std::string& prefix, const SheetView& view) {
  if (view.panes == SheetView::Panes::kNone) return "";
  std::string text = "<" + prefix + "pane";
  if (view.has_right_panes()) text += " xSplit=\"" + NumberText(view.split_columns) + "\"";
  if (view.has_lower_panes()) text += " ySplit=\"" + NumberText(view.split_rows) + "\"";
  text += " topLeftCell=\"" + ToA1(view.scrolled) + "\" activePane=\"" + ActivePaneOf(view) + "\"";
  if (view.panes == SheetView::Panes::kFrozen) text += " state=\"frozen\"";
  return text + "/>";
}

// The panes and what is selected in each of them.
std::string PanesAndSelections(const std::string& prefix, const SheetView& view) {
  std::string text = PaneElement(prefix, view);
  const std::string active = ActivePaneOf(view);
  auto add = [&](const std::string& pane, CellAddress first) {
    if (pane != active) {
      text += SelectionElement(prefix, pane, first,
                               {{first.row, first.column, first.row, first.column}});
    }
  };
  if (view.has_right_panes()) add("topRight", {view.top_left.row, view.scrolled.column});
  if (view.has_lower_panes()) add("bottomLeft", {view.scrolled.row, view.top_left.column});
  const bool selects_first_cell =
      view.selection == SheetView{}.selection && view.active_cell == CellAddress{};
  if (!text.empty() || !selects_first_cell) {
    text += SelectionElement(prefix, active, view.active_cell, view.selection);
  }
  return text;
}

// Patches one <sheetView>; its places are those in `document`.
class ViewPatch {
 public:
  ViewPatch(const std::string& document, const ViewPlaces& places, const std::string& prefix)
      : places_(places), prefix_(prefix) {
    patch_.Reset(document);
  }

  void SetWindow(int window) {
    if (places_.window == window) return;
    if (places_.window_id.data()) {
      patch_.Replace(places_.window_id, std::to_string(window));
    } else {
      InsertAttribute("workbookViewId", std::to_string(window));
    }
  }
  void SetTabSelected(bool selected) {
    if (IsTrue(places_.tab_selected) == selected) return;
    if (places_.tab_selected.data()) {
      patch_.Replace(places_.tab_selected, selected ? "1" : "0");
    } else {
      InsertAttribute("tabSelected", "1");
    }
  }
  void SetView(const SheetView& view) {
    const SheetView was = ViewOf(places_);
    if (was.top_left != view.top_left) SetTopLeft(view.top_left);
    if (was.panes != view.panes || was.split_columns != view.split_columns ||
        was.split_rows != view.split_rows) {
      ReplaceContent(view);
      return;
    }
    if (was.scrolled != view.scrolled && places_.pane.exists()) {
      if (places_.pane_top_left.data()) {
        patch_.Replace(places_.pane_top_left, ToA1(view.scrolled));
      } else {
        const std::size_t after_name = places_.pane.begin + 1 + prefix_.size() + 4;
        patch_.Replace(after_name, after_name, " topLeftCell=\"" + ToA1(view.scrolled) + "\"");
      }
    }
    if (was.selection != view.selection || was.active_cell != view.active_cell) {
      ReplaceSelection(view);
    }
  }
  std::string Apply() {
    std::string text;
    patch_.AppendTo(text, places_.element.begin, places_.element.end);
    return text;
  }

 private:
  void InsertAttribute(const std::string& name, const std::string& value) {
    const std::size_t after_name = places_.tag.begin + 1 + places_.name.size();
    patch_.Replace(after_name, after_name, " " + name + "=\"" + value + "\"");
  }
  void SetTopLeft(CellAddress cell) {
    if (!places_.top_left.data()) {
      InsertAttribute("topLeftCell", ToA1(cell));
    } else if (cell == CellAddress{}) {
      patch_.RemoveAttribute(places_.top_left);
    } else {
      patch_.Replace(places_.top_left, ToA1(cell));
    }
  }
  // Opens the element when it is empty.
  void InsertContent(std::size_t at, const std::string& content) {
    if (content.empty()) return;
    if (places_.is_empty) {
      patch_.Replace(places_.tag.end - 2, places_.tag.end,
                     ">" + content + "</" + places_.name + ">");
    } else {
      patch_.Replace(at, at, content);
    }
  }
  void ReplaceContent(const SheetView& view) {
    if (places_.pane.exists()) patch_.Replace(places_.pane.begin, places_.pane.end, "");
    for (const ViewPlaces::Selection& selection : places_.selections) {
      patch_.Replace(selection.piece.begin, selection.piece.end, "");
    }
    InsertContent(places_.tag.end, PanesAndSelections(prefix_, view));
  }
  void ReplaceSelection(const SheetView& view) {
    const std::string_view pane = places_.active_pane.data() ? places_.active_pane : "topLeft";
    const std::string element = SelectionElement(prefix_, pane, view.active_cell, view.selection);
    if (const ViewPlaces::Selection* old = places_.ActiveSelection()) {
      patch_.Replace(old->piece.begin, old->piece.end, element);
    } else if (!places_.selections.empty()) {
      InsertContent(places_.selections.back().piece.end, element);
    } else {
      InsertContent(places_.pane.exists() ? places_.pane.end : places_.tag.end, element);
    }
  }

  const ViewPlaces& places_;
  const std::string& prefix_;
  ElementPatch patch_;
};

std::string NewView(const std::string& prefix, int window, const SheetViewToWrite& to_write) {
  const std::string empty =
      "<" + prefix + "sheetView workbookViewId=\"" + std::to_string(window) + "\"/>";
  const ViewPlaces places = ReadAllPlaces(empty).front();
  ViewPatch patch(empty, places, prefix);
  if (to_write.view) patch.SetView(*to_write.view);
  if (to_write.tab_selected) patch.SetTabSelected(*to_write.tab_selected);
  return patch.Apply();
}

// Whether a view that the markup does not have must be written: it differs from one of A1.
bool SaysSomething(const SheetViewToWrite& window) {
  return (window.view && *window.view != SheetView{}) || window.tab_selected.value_or(false);
}

}  // namespace

SheetView ReadSheetView(const SheetMarkup& markup, int window) {
  const MarkupElement* element = markup.Find("sheetViews");
  if (!element) return {};
  for (const ViewPlaces& places : ReadAllPlaces(element->text)) {
    if (places.window == window) return ViewOf(places);
  }
  return {};
}

void WriteSheetViews(SheetMarkup& markup, const std::vector<SheetViewToWrite>& windows,
                     std::size_t windows_before) {
  const std::string& prefix = markup.prefix;
  const MarkupElement* existing = markup.Find("sheetViews");
  const std::string before = existing ? existing->text : "";
  const std::vector<ViewPlaces> views =
      before.empty() ? std::vector<ViewPlaces>() : ReadAllPlaces(before);
  bool same_windows = windows.size() == windows_before;
  for (std::size_t window = 0; window < windows.size(); ++window) {
    same_windows &= windows[window].origin == static_cast<int>(window);
  }
  // What becomes of each view; those of windows that are gone go with them.
  std::vector<std::optional<std::string>> kept(views.size());
  std::string added;
  for (int window = 0; window < static_cast<int>(windows.size()); ++window) {
    const SheetViewToWrite& to_write = windows[window];
    auto places = std::ranges::find_if(views, [&](const ViewPlaces& candidate) {
      return to_write.origin && candidate.window == *to_write.origin;
    });
    if (places == views.end()) {
      if (SaysSomething(to_write) || !same_windows) added += NewView(prefix, window, to_write);
      continue;
    }
    ViewPatch patch(before, *places, prefix);
    patch.SetWindow(window);
    if (to_write.view) patch.SetView(*to_write.view);
    if (to_write.tab_selected) patch.SetTabSelected(*to_write.tab_selected);
    kept[static_cast<std::size_t>(places - views.begin())] = patch.Apply();
  }
  if (views.empty() && added.empty()) return;
  std::string text = "<" + prefix + "sheetViews>" + added + "</" + prefix + "sheetViews>";
  if (!views.empty()) {
    text.clear();
    std::size_t at = 0;
    for (std::size_t i = 0; i < views.size(); ++i) {
      const Piece& element = views[i].element;
      text += before.substr(at, element.begin - at);
      // While the windows stay, a view that belongs to none of them stays as well.
      if (kept[i] || same_windows) {
        text += kept[i].value_or(before.substr(element.begin, element.end - element.begin));
      }
      at = element.end;
    }
    text += added + before.substr(at);
  }
  if (text == before) return;
  markup.FindOrInsert("sheetViews").text = std::move(text);
  markup.changed = true;
}

}  // namespace vantora::embedded
