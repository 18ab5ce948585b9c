#include "hosts/excel/excel_window.h"

namespace vantora::excel {

namespace {

class ExcelPane : public host::Pane {
 public:
  explicit ExcelPane(Object object) : object_(std::move(object)) {}

  int ScrollColumn() override { return object_.GetInt(Member::kPaneScrollColumn); }
  void SetScrollColumn(int column) override { object_.Put(Member::kPaneScrollColumn, column); }

 private:
  Object object_;
};

}  // namespace

double ExcelWindow::Top() { return object_.GetDouble(Member::kWindowTop); }

void ExcelWindow::SetTop(double points) { object_.Put(Member::kWindowTop, points); }

double ExcelWindow::Left() { return object_.GetDouble(Member::kWindowLeft); }

void ExcelWindow::SetLeft(double points) { object_.Put(Member::kWindowLeft, points); }

double ExcelWindow::Height() { return object_.GetDouble(Member::kWindowHeight); }

void ExcelWindow::SetHeight(double points) { object_.Put(Member::kWindowHeight, points); }

double ExcelWindow::Width() { return object_.GetDouble(Member::kWindowWidth); }

void ExcelWindow::SetWidth(double points) { object_.Put(Member::kWindowWidth, points); }

void ExcelWindow::SetWindowState(host::XlWindowState state) {
  object_.Put(Member::kWindowWindowState, static_cast<int>(state));
}

void ExcelWindow::Activate() { object_.Call(Member::kWindowActivate); }

void ExcelWindow::Close() { object_.Call(Member::kWindowClose); }

void ExcelWindow::SetFreezePanes(bool freeze) { object_.Put(Member::kWindowFreezePanes, freeze); }

int ExcelWindow::ScrollRow() { return object_.GetInt(Member::kWindowScrollRow); }

void ExcelWindow::SetScrollRow(int row) { object_.Put(Member::kWindowScrollRow, row); }

int ExcelWindow::ScrollColumn() { return object_.GetInt(Member::kWindowScrollColumn); }

void ExcelWindow::SetScrollColumn(int column) { object_.Put(Member::kWindowScrollColumn, column); }

std::vector<host::PanePtr> ExcelWindow::Panes() {
  std::vector<host::PanePtr> panes;
  for (Object& pane :
       object_.Items(Member::kWindowPanes, Member::kPanesCount, Member::kPanesItem)) {
    panes.push_back(std::make_shared<ExcelPane>(std::move(pane)));
  }
  return panes;
}

}  // namespace vantora::excel
