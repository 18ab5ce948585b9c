// Fills, fonts and lines of cells of Excel, late-bound.
#pragma once

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelInterior : public host::Interior {
 public:
  explicit ExcelInterior(Object object) : object_(std::move(object)) {}

  int ColorIndex() override;
  void SetColorIndex(int color_index) override;
  void SetPattern(host::XlPattern pattern) override;

 private:
  Object object_;
};

class ExcelFont : public host::Font {
 public:
  explicit ExcelFont(Object object) : object_(std::move(object)) {}

  void SetSize(double points) override;
  void SetBold(bool bold) override;
  void SetItalic(bool italic) override;
  void SetColorIndex(int color_index) override;

 private:
  Object object_;
};

// The lines of one place (Excel's `Border`).
class ExcelBorders : public host::Borders {
 public:
  explicit ExcelBorders(Object object) : object_(std::move(object)) {}

  void SetWeight(host::XlBorderWeight weight) override;
  void SetColorIndex(int color_index) override;

 private:
  Object object_;
};

}  // namespace vantora::excel
