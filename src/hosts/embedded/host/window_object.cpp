// The windows of an open workbook and their panes.
#include "host/objects.h"
#include "host/window_panes.h"

namespace vantora::embedded {
namespace {

using State = BookWindow::State;

// A window stays the same object while it is open, whichever sheet it shows.
struct WindowHandle {
  BookHandle book;
  int id;

  BookWindow& operator*() const {
    BookWindow* window = book->windows().Find(id);
    if (!window) Refuse("The window of \"" + book->file().name() + "\" has been closed.");
    return *window;
  }
  BookWindow* operator->() const { return &**this; }

  // The view of the sheet that the window shows; refuses a chart sheet. `property` names what is
  // wanted of it.
  SheetView& View(const std::string& property) const {
    BookWindow& window = **this;
    const SheetModel& sheet = book->sheet(window.active_sheet);
    if (!sheet.is_worksheet) {
      Refuse("Unable to set or get the " + property + " property of the Window class: \"" +
             sheet.name + "\" is not a worksheet.");
    }
    return book->windows().View(window, window.active_sheet);
  }
};

void RefuseOutside(const std::string& property, int position, int last) {
  if (position >= 1 && position <= last) return;
  Refuse("Unable to set the " + property + " property: there is no row or column " +
         std::to_string(position) + ".");
}

class EmbeddedPane : public host::Pane {
 public:
  EmbeddedPane(WindowHandle window, int pane) : window_(std::move(window)), pane_(pane) {}

  int ScrollColumn() override { return PaneScrollColumn(View(), pane_); }
  void SetScrollColumn(int column) override {
    RefuseOutside("ScrollColumn", column, kMaxColumn);
    ScrollPaneToColumn(View(), pane_, column);
  }

 private:
  SheetView& View() {
    SheetView& view = window_.View("Panes");
    if (pane_ >= PaneCount(view)) Refuse("The window no longer has that pane.");
    return view;
  }

  WindowHandle window_;
  int pane_;
};

class EmbeddedWindow : public host::Window {
 public:
  explicit EmbeddedWindow(WindowHandle window) : window_(std::move(window)) {}

  double Top() override { return window_->place.top; }
  void SetTop(double points) override {
    RefuseUnlessMovable("Top", State::kMaximized);
    window_->place.top = points;
  }
  double Left() override { return window_->place.left; }
  void SetLeft(double points) override {
    RefuseUnlessMovable("Left", State::kMaximized);
    window_->place.left = points;
  }
  double Height() override { return window_->height(); }
  void SetHeight(double points) override {
    RefuseSize("Height", points);
    window_->place.height = points;
  }
  double Width() override { return window_->width(); }
  void SetWidth(double points) override {
    RefuseSize("Width", points);
    window_->place.width = points;
  }
  void SetWindowState(host::XlWindowState state) override;
  void Activate() override;
  void Close() override;
  void SetFreezePanes(bool freeze) override;
  int ScrollRow() override { return ScrollPosition(window_.View("ScrollRow")).row; }
  void SetScrollRow(int row) override {
    RefuseOutside("ScrollRow", row, kMaxRow);
    ScrollToRow(window_.View("ScrollRow"), row);
  }
  int ScrollColumn() override { return ScrollPosition(window_.View("ScrollColumn")).column; }
  void SetScrollColumn(int column) override {
    RefuseOutside("ScrollColumn", column, kMaxColumn);
    ScrollToColumn(window_.View("ScrollColumn"), column);
  }
  std::vector<host::PanePtr> Panes() override;

 private:
  void RefuseUnlessMovable(const std::string& property, State state) {
    if (window_->state != state) return;
    Refuse("Unable to set the " + property + " property of the Window class: the window is " +
           (state == State::kMaximized ? "maximized." : "minimized."));
  }
  void RefuseSize(const std::string& property, double points) {
    RefuseUnlessMovable(property, State::kMaximized);
    RefuseUnlessMovable(property, State::kMinimized);
    if (points >= 0) return;
    Refuse("Unable to set the " + property +
           " property of the Window class: a window can't be smaller than nothing.");
  }

  WindowHandle window_;
};

void EmbeddedWindow::SetWindowState(host::XlWindowState state) {
  window_->state = state == host::XlWindowState::kMaximized   ? State::kMaximized
                   : state == host::XlWindowState::kMinimized ? State::kMinimized
                                                              : State::kNormal;
}

void EmbeddedWindow::Activate() {
  window_.book->windows().Activate(window_->id);
  window_.book.application->active_workbook = window_.book.workbook;
}

void EmbeddedWindow::Close() { window_.book->windows().Close(window_->id); }

void EmbeddedWindow::SetFreezePanes(bool freeze) {
  SheetView& view = window_.View("FreezePanes");
  if (freeze) {
    const int sheet = window_->active_sheet;
    FreezePanes(view, *window_, window_.book->sheet(sheet), window_.book->Columns(sheet));
  } else {
    UnfreezePanes(view);
  }
}

std::vector<host::PanePtr> EmbeddedWindow::Panes() {
  const int count = PaneCount(window_.View("Panes"));
  std::vector<host::PanePtr> panes;
  for (int pane = 0; pane < count; ++pane) {
    panes.push_back(std::make_shared<EmbeddedPane>(window_, pane));
  }
  return panes;
}

}  // namespace

std::vector<host::WindowPtr> MakeWindows(BookHandle book) {
  std::vector<host::WindowPtr> windows;
  for (int id : book->windows().order()) {
    windows.push_back(std::make_shared<EmbeddedWindow>(WindowHandle{book, id}));
  }
  return windows;
}

}  // namespace vantora::embedded
