// Interior, Font and Borders of a range of an open workbook.
#pragma once

#include <vector>

#include "host/objects.h"

namespace vantora::embedded {

host::InteriorPtr MakeInterior(BookHandle book, int sheet, std::vector<Area> areas);
host::FontPtr MakeFont(BookHandle book, int sheet, std::vector<Area> areas);
host::BordersPtr MakeInsideVerticals(BookHandle book, int sheet, std::vector<Area> areas);

// Refuses a weight or a colour that there is none of; `automatic` allows kAutomaticColor.
LineWeight LineWeightOf(host::XlBorderWeight weight);
int CheckedColor(int color_index, bool automatic, const char* property);

}  // namespace vantora::embedded
