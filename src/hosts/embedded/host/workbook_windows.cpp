#include "host/workbook_windows.h"

#include <algorithm>

namespace vantora::embedded {

WorkbookWindows::WorkbookWindows(WorkbookFile& file) : file_(file) {
  for (const BookView& view : file.windows()) {
    BookWindow& window = windows_.emplace_back();
    window.id = next_id_++;
    window.origin = window.id;
    window.place = view;
    if (view.minimized) window.state = BookWindow::State::kMinimized;
    window.active_sheet = file.active_sheet_of(window.id);
    order_.push_back(window.id);
  }
}

BookWindow* WorkbookWindows::Find(int id) {
  if (std::ranges::find(order_, id) == order_.end()) return nullptr;
  return &*std::ranges::find(windows_, id, &BookWindow::id);
}

BookWindow& WorkbookWindows::active() {
  return order_.empty() ? windows_.back() : *Find(order_.front());
}

SheetView& WorkbookWindows::View(BookWindow& window, int sheet) {
  auto known = window.views.find(sheet);
  if (known != window.views.end()) return known->second;
  SheetView view;
  if (window.origin) view = ReadSheetView(file_.markup(sheet), *window.origin);
  return window.views.emplace(sheet, view).first->second;
}

void WorkbookWindows::Activate(int id) {
  auto place = std::ranges::find(order_, id);
  std::rotate(order_.begin(), place, std::next(place));
}

void WorkbookWindows::Close(int id) {
  std::erase(order_, id);
  if (order_.empty()) return;
  std::erase_if(windows_, [&](const BookWindow& window) { return window.id == id; });
}

BookWindow& WorkbookWindows::Open() {
  BookWindow window;
  for (const auto& sheet : file_.model().sheets) {
    SheetView view = View(active(), sheet->id);
    view.panes = SheetView::Panes::kNone;
    view.split_columns = view.split_rows = 0;
    view.scrolled = view.top_left;
    window.views.emplace(sheet->id, view);
  }
  window.id = next_id_++;
  window.place = active().place;
  window.place.minimized = false;
  window.active_sheet = active().active_sheet;
  if (order_.empty()) windows_.clear();
  windows_.push_back(std::move(window));
  order_.insert(order_.begin(), windows_.back().id);
  return windows_.back();
}

void WorkbookWindows::Leave(int sheet, int for_sheet) {
  for (BookWindow& window : windows_) {
    if (window.active_sheet == sheet) window.active_sheet = for_sheet;
  }
}

void WorkbookWindows::Write() {
  std::vector<WindowToWrite> to_write;
  for (const BookWindow& window : windows_) {
    to_write.push_back({window.origin, window.place, window.active_sheet, window.views});
    to_write.back().view.minimized = window.state == BookWindow::State::kMinimized;
  }
  file_.WriteWindows(to_write);
  for (std::size_t i = 0; i < windows_.size(); ++i) windows_[i].origin = static_cast<int>(i);
}

}  // namespace vantora::embedded
