#include "host/state_recorder.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

#include "core/convert.h"
#include "formula/follow_columns.h"
#include "formula/sheet_prefix.h"
#include "host/window_panes.h"

namespace vantora::embedded {
namespace {

// Of alike changes; a model has thousands of rows and names.
constexpr std::size_t kMostAlike = 20;

// Cuts lines that begin alike.
void AddLines(std::vector<std::string> alike, const std::string& many,
              std::vector<std::string>& lines) {
  const std::size_t shown = std::min(alike.size(), kMostAlike);
  std::move(alike.begin(), alike.begin() + static_cast<std::ptrdiff_t>(shown),
            std::back_inserter(lines));
  if (alike.size() > shown) {
    lines.push_back("... and " + std::to_string(alike.size() - shown) + " more " + many);
  }
}

const char* WordFor(Visibility visibility) {
  switch (visibility) {
    case Visibility::kVisible:
      return " shown";
    case Visibility::kHidden:
      return " hidden";
    case Visibility::kVeryHidden:
      return " hidden from the user";
  }
  return "";
}

bool IsHidden(const RowFormat& format) { return format.hidden || format.height == 0.0; }

std::vector<int> HiddenRows(const std::vector<RowTable::Entry>& rows) {
  std::vector<int> hidden;
  for (const RowTable::Entry& entry : rows) {
    if (IsHidden(entry.format)) hidden.push_back(entry.row);
  }
  return hidden;
}

// Appends "Data!1:1", "Data!5:9" for the rows of `to` that `from` does not have, which are in
// ascending order both.
void AddRuns(const std::vector<int>& from, const std::vector<int>& to, const std::string& prefix,
             std::vector<std::string>& places) {
  std::vector<int> rows;
  std::ranges::set_difference(to, from, std::back_inserter(rows));
  for (std::size_t i = 0; i < rows.size();) {
    std::size_t end = i + 1;
    while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
    places.push_back(prefix + std::to_string(rows[i]) + ":" + std::to_string(rows[end - 1]));
    i = end;
  }
}

// The rows, ascending, of which `differ` says so; `then` and `now` hold those that are not
// `standard`.
template <typename Differ>
std::vector<int> RowsThatDiffer(const std::vector<RowTable::Entry>& then,
                                const std::vector<RowTable::Entry>& now, const RowFormat& standard,
                                Differ differ) {
  std::vector<int> rows;
  auto before = then.begin();
  auto after = now.begin();
  while (before != then.end() || after != now.end()) {
    const bool in_then = before != then.end() && (after == now.end() || before->row <= after->row);
    const bool in_now = after != now.end() && (before == then.end() || after->row <= before->row);
    const int row = in_then ? before->row : after->row;
    if (differ(in_then ? before->format : standard, in_now ? after->format : standard)) {
      rows.push_back(row);
    }
    before += in_then;
    after += in_now;
  }
  return rows;
}

// All places on one line.
void AddPlaces(const std::string& what, const std::vector<std::string>& places,
               std::vector<std::string>& lines) {
  if (places.empty()) return;
  std::string line = what;
  const std::size_t shown = std::min(places.size(), kMostAlike);
  for (std::size_t i = 0; i < shown; ++i) line += (i == 0 ? "" : ", ") + places[i];
  if (places.size() > shown) {
    line += " and " + std::to_string(places.size() - shown) + " more places";
  }
  lines.push_back(std::move(line));
}

std::string PlaceText(const BookWindow& window) {
  const auto whole = [](double points) { return std::to_string(std::lround(points)); };
  return whole(window.place.left) + ", " + whole(window.place.top) + " and " +
         whole(window.width()) + " by " + whole(window.height()) + " points";
}

}  // namespace

StateRecorder::StateRecorder(OpenWorkbook& workbook)
    : workbook_(workbook),
      active_window_(workbook.windows().active().id),
      insertions_(workbook.insertions().size()),
      renames_(workbook.renames().size()) {
  BookWindow& active = workbook_.windows().active();
  for (const auto& sheet : workbook_.model().sheets) {
    sheets_.push_back(
        {.visibility = sheet->visibility,
         .is_protected = sheet->is_protected,
         .rows = sheet->rows.entries(),
         .view = sheet->is_worksheet ? workbook_.windows().View(active, sheet->id) : SheetView{}});
  }
  for (const DefinedName& name : workbook_.model().names) {
    names_.emplace(std::pair(name.scope, CaseFolded(name.name)), name);
  }
  for (int id : workbook_.windows().order()) {
    const BookWindow& window = *workbook_.windows().Find(id);
    windows_.emplace(id, WindowThen{window.place, window.active_sheet});
  }
}

std::vector<std::string> StateRecorder::Changes() const {
  Lines lines;
  const std::vector<int>& sheets = workbook_.model().tab_order;
  for (int sheet : sheets) AddSheet(sheet, lines);
  AddRows(lines);
  AddNames(lines);
  AddWindows(lines);
  for (int sheet : sheets) AddView(sheet, lines);
  return lines;
}

std::string StateRecorder::SheetName(int sheet) const {
  return "sheet \"" + workbook_.sheet(sheet).name + "\"";
}

void StateRecorder::AddSheet(int sheet, Lines& lines) const {
  // A sheet that was added since is new as a whole.
  if (static_cast<std::size_t>(sheet) >= sheets_.size()) return;
  const SheetModel& now = workbook_.sheet(sheet);
  const SheetThen& then = sheets_[sheet];
  if (now.visibility != then.visibility) {
    lines.push_back(SheetName(sheet) + WordFor(now.visibility));
  }
  if (now.is_protected != then.is_protected) {
    lines.push_back(SheetName(sheet) + (now.is_protected ? " protected" : " unprotected"));
  }
}

void StateRecorder::AddRows(Lines& lines) const {
  std::vector<std::string> hidden;
  std::vector<std::string> shown;
  std::vector<std::string> heights;
  std::vector<std::string> levels;
  for (int sheet : workbook_.model().tab_order) {
    if (static_cast<std::size_t>(sheet) >= sheets_.size()) continue;
    const std::vector<int> then = HiddenRows(sheets_[sheet].rows);
    const std::vector<int> now = HiddenRows(workbook_.sheet(sheet).rows.entries());
    std::string prefix;
    AppendSheetPrefix(prefix, sheet, sheet, workbook_.model());
    AddRuns(then, now, prefix, hidden);
    AddRuns(now, then, prefix, shown);
    const RowTable& rows = workbook_.sheet(sheet).rows;
    const double standard = workbook_.sheet(sheet).standard_row_height;
    const auto differ = [&](auto difference) {
      return RowsThatDiffer(sheets_[sheet].rows, rows.entries(), rows.standard(), difference);
    };
    // A row without height is hidden, which is told.
    AddRuns({}, differ([&](const RowFormat& a, const RowFormat& b) {
              return a.height != 0.0 && b.height != 0.0 &&
                     a.height.value_or(standard) != b.height.value_or(standard);
            }),
            prefix, heights);
    AddRuns({}, differ([](const RowFormat& a, const RowFormat& b) {
              return a.outline_level != b.outline_level;
            }),
            prefix, levels);
  }
  AddPlaces("rows hidden at ", hidden, lines);
  AddPlaces("rows shown at ", shown, lines);
  AddPlaces("row heights changed at ", heights, lines);
  AddPlaces("outline levels of rows changed at ", levels, lines);
}

void StateRecorder::AddView(int sheet, Lines& lines) const {
  if (static_cast<std::size_t>(sheet) >= sheets_.size() || !workbook_.sheet(sheet).is_worksheet) {
    return;
  }
  const SheetView& then = sheets_[sheet].view;
  const SheetView& now = workbook_.windows().View(workbook_.windows().active(), sheet);
  const auto same_panes = [](const SheetView& a, const SheetView& b) {
    return a.panes == b.panes && a.split_columns == b.split_columns && a.split_rows == b.split_rows;
  };
  if (!same_panes(then, now)) {
    const bool frozen = now.panes == SheetView::Panes::kFrozen;
    const CellAddress cell{now.top_left.row + static_cast<int>(now.split_rows),
                           now.top_left.column + static_cast<int>(now.split_columns)};
    lines.push_back(SheetName(sheet) + (frozen ? " frozen at " + ToA1(cell)
                                        : now.panes == SheetView::Panes::kNone
                                            ? " no longer in panes"
                                            : " split in panes"));
  }
  if (ScrollPosition(then) != ScrollPosition(now)) {
    lines.push_back(SheetName(sheet) + " scrolled to " + ToA1(ScrollPosition(now)));
  }
  if (sheet != workbook_.active_sheet() || then.selection == now.selection) return;
  std::string selection;
  for (const Area& area : now.selection) selection += (selection.empty() ? "" : ",") + ToA1(area);
  lines.push_back("selected on " + SheetName(sheet) + ": " + selection);
}

std::string StateRecorder::ReferenceNow(DefinedName name) const {
  for (const SheetRename& rename : std::span(workbook_.renames()).subspan(renames_)) {
    if (auto text = RenameSheetInText(name.refers_to, rename)) name.refers_to = *text;
  }
  for (const ColumnInsertion& insertion : std::span(workbook_.insertions()).subspan(insertions_)) {
    name.refers_to = FollowedReference(name, workbook_.model(), insertion);
  }
  return name.refers_to;
}

void StateRecorder::AddNames(Lines& lines) const {
  const auto text = [&](const DefinedName& name) {
    std::string scope;
    if (name.scope >= 0) AppendSheetPrefix(scope, name.scope, name.scope, workbook_.model());
    return "name \"" + scope + name.name + "\"";
  };
  Lines defined;
  std::map<std::pair<int, std::u32string>, DefinedName> gone = names_;
  for (const DefinedName& name : workbook_.model().names) {
    const auto then = gone.find({name.scope, CaseFolded(name.name)});
    if (then == gone.end()) {
      defined.push_back(text(name) + " defined: =" + name.refers_to);
      continue;
    }
    if (ReferenceNow(then->second) != name.refers_to) {
      defined.push_back(text(name) + " defined anew: =" + name.refers_to);
    } else if (then->second.name != name.name) {
      defined.push_back(text(then->second) + " written \"" + name.name + "\"");
    }
    gone.erase(then);
  }
  Lines deleted;
  for (const auto& [key, name] : gone) deleted.push_back(text(name) + " deleted");
  AddLines(std::move(defined), "names defined", lines);
  AddLines(std::move(deleted), "names deleted", lines);
}

void StateRecorder::AddWindows(Lines& lines) const {
  WorkbookWindows& windows = workbook_.windows();
  for (const auto& [id, then] : windows_) {
    if (!windows.Find(id)) lines.push_back("window of " + SheetName(then.active_sheet) + " closed");
  }
  for (int id : windows.order()) {
    const BookWindow& now = *windows.Find(id);
    const std::string of = "window of " + SheetName(now.active_sheet);
    const auto then = windows_.find(id);
    if (then == windows_.end()) {
      lines.push_back(of + " opened at " + PlaceText(now));
      continue;
    }
    BookView before = then->second.place;
    before.active_tab = now.place.active_tab;  // told below
    if (now.place != before) lines.push_back(of + " moved to " + PlaceText(now));
  }
  const BookWindow& active = windows.active();
  const auto then = windows_.find(active.id);
  const bool other_window = active.id != active_window_;
  if (other_window ||
      (then != windows_.end() && then->second.active_sheet != active.active_sheet)) {
    lines.push_back(SheetName(active.active_sheet) + " activated");
  }
}

}  // namespace vantora::embedded
