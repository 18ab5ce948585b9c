// What a sheet's markup says is selected.
#pragma once

#include "cells/address.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// The first area of the selection in the active pane; A1 where the markup says nothing.
Area SelectionInMarkup(const SheetMarkup& markup);

}  // namespace vantora::embedded
