// What lies over the cells of Excel: comments, controls and charts; late-bound.
#pragma once

#include <string>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelComment : public host::Comment {
 public:
  explicit ExcelComment(Object object) : object_(std::move(object)) {}

  void SetVisible(bool visible) override;
  void Text(std::string_view text) override;

 private:
  Object object_;
};

class ExcelShape : public host::Shape {
 public:
  explicit ExcelShape(Object object) : object_(std::move(object)) {}

  std::string LinkedCell() override;

 private:
  Object object_;
};

class ExcelChartObject : public host::ChartObject {
 public:
  explicit ExcelChartObject(Object object) : object_(std::move(object)) {}

  double Left() override;
  double Top() override;
  double Width() override;
  std::string TitleCaption() override;

 private:
  Object object_;
};

}  // namespace vantora::excel
