// What a paste takes over from another sheet, of this workbook or another one, of what stands
// around the cells: conditional formats, validations, merged cells, hyperlinks.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "cells/address.h"
#include "package/sheet_features.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// What the sheets' workbooks have to say to it.
struct TransferContext {
  // The target's number of a format that a conditional format of the source applies.
  std::function<int(int)> differential_format;
  // Whether a formula can stand on the target sheet: it names no sheet that is not there.
  std::function<bool(const std::string&)> fits;
  // The target sheet's relationship that leads where that one of the source leads; nullopt when
  // there is none.
  std::function<std::optional<std::string>(const std::string&)> relationship;
};

// Clears the features at `to` and adds those of the cells of `from`, cut to these and moved; both
// are of the same size. Formulas are shifted as the cells are. Returns how many conditional formats
// and validations were left out because their formulas don't fit. Throws XmlError.
int TransferFeatures(const SheetMarkup& source, const Area& from, SheetMarkup& target,
                     const Area& to, unsigned features, const TransferContext& context);

}  // namespace vantora::embedded
