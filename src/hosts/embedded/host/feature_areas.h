// Where a sheet's features around the cells are, kept from one edit to the next: thousands of
// pastes look at features that hardly ever change.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "cells/address.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

class FeatureAreas {
 public:
  // Whether a validation, conditional format, merged area or hyperlink of the sheet has cells in
  // one of the areas.
  bool TouchedBy(int sheet, const SheetMarkup& markup, std::initializer_list<Area> areas);
  // Valid until the next call.
  const std::vector<Area>& MergedAreas(int sheet, const SheetMarkup& markup);

 private:
  struct Known {
    // The elements that were looked at, as they were.
    std::vector<std::string> elements;
    std::vector<Area> all;
    std::vector<Area> merged;
  };
  const Known& Look(int sheet, const SheetMarkup& markup);

  std::map<int, Known> known_;
};

}  // namespace vantora::embedded
