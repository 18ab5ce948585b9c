// A window of Excel and its panes, late-bound.
#pragma once

#include <vector>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelWindow : public host::Window {
 public:
  explicit ExcelWindow(Object object) : object_(std::move(object)) {}

  double Top() override;
  void SetTop(double points) override;
  double Left() override;
  void SetLeft(double points) override;
  double Height() override;
  void SetHeight(double points) override;
  double Width() override;
  void SetWidth(double points) override;
  void SetWindowState(host::XlWindowState state) override;
  void Activate() override;
  void Close() override;
  void SetFreezePanes(bool freeze) override;
  int ScrollRow() override;
  void SetScrollRow(int row) override;
  int ScrollColumn() override;
  void SetScrollColumn(int column) override;
  std::vector<host::PanePtr> Panes() override;

 private:
  Object object_;
};

}  // namespace vantora::excel
