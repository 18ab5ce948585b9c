// The values that a chart keeps of the cells it shows.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// chartN.xml with the caches of its references brought up to date from the model; nullopt when
// nothing differs. Asked for are only the references of which `concerns` (sheet, area) says that
// their cells may have changed. Throws XmlError.
std::optional<std::string> UpdateChartCaches(std::string_view text, WorkbookModel& model,
                                             const std::function<bool(int, const Area&)>& concerns);

}  // namespace vantora::embedded
