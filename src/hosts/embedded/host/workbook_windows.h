// The windows of an open workbook: where they stand, which sheet each shows, and how.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "package/workbook_file.h"

namespace vantora::embedded {

// Size of a window of which the file says nothing, and the space for windows where nobody says
// otherwise, in points.
inline constexpr double kUsualWindowWidth = 1428;
inline constexpr double kUsualWindowHeight = 600;

struct BookWindow {
  enum class State { kNormal, kMinimized, kMaximized };

  // Never given to another window of the workbook.
  int id = 0;
  // The window's number in the file; nullopt for a window that is new.
  std::optional<int> origin;
  // Its active tab is not kept up to date: `active_sheet` is.
  BookView place;
  State state = State::kNormal;
  int active_sheet = 0;
  // By id, of the sheets that someone looked at.
  std::map<int, SheetView> views;

  double width() const { return place.width > 0 ? place.width : kUsualWindowWidth; }
  double height() const { return place.height > 0 ? place.height : kUsualWindowHeight; }
};

class WorkbookWindows {
 public:
  explicit WorkbookWindows(WorkbookFile& file);

  // The ids of the open windows, the active one first: the order in which they lie above each
  // other. Empty when all were closed.
  const std::vector<int>& order() const { return order_; }
  // Null when the window was closed.
  BookWindow* Find(int id);
  // The active window; when all were closed, the one that was closed last.
  BookWindow& active();
  const BookWindow& active() const { return const_cast<WorkbookWindows*>(this)->active(); }

  // How a window shows a sheet.
  SheetView& View(BookWindow& window, int sheet);

  void Activate(int id);
  // Closes an open window; the one below it becomes active.
  void Close(int id);
  // A further window with the active sheet, selections and scroll positions of the active one, but
  // without its panes. It becomes active.
  BookWindow& Open();

  // Windows that show the sheet show another one from now on.
  void Leave(int sheet, int for_sheet);

  // Hands the windows to the file, in the order in which they were made.
  void Write();

 private:
  WorkbookFile& file_;
  // In the order in which they were made. The last one that was closed stays while none is open.
  std::vector<BookWindow> windows_;
  std::vector<int> order_;
  int next_id_ = 0;
};

}  // namespace vantora::embedded
