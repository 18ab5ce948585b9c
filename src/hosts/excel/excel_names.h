// The defined names of a workbook of Excel, late-bound.
#pragma once

#include <string>

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelName : public host::Name {
 public:
  explicit ExcelName(Object object) : object_(std::move(object)) {}

  std::string OwnName() override;
  host::RangePtr RefersToRange() override;
  void Delete() override;

 private:
  Object object_;
};

class ExcelNames : public host::Names {
 public:
  explicit ExcelNames(Object object) : object_(std::move(object)) {}

  host::NamePtr Item(std::string_view name) override;
  bool Add(std::string_view name, std::string_view refers_to_r1c1) override;

 private:
  Object object_;
};

}  // namespace vantora::excel
