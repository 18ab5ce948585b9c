// Shapes on a sheet of an open workbook.
#include "host/objects.h"

namespace vantora::embedded {

host::ShapePtr MakeShape(BookHandle, int, std::string_view) { RefuseMember("Worksheet.Shapes"); }

}  // namespace vantora::embedded
