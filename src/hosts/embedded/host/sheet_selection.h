// What a sheet's markup says is selected.
#pragma once

#include <vector>

#include "cells/address.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// The areas of the selection in the active pane; A1 where the markup says nothing. Never empty.
std::vector<Area> SelectionInMarkup(const SheetMarkup& markup);

}  // namespace vantora::embedded
