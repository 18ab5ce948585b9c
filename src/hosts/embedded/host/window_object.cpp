// The windows of an open workbook.
#include "host/objects.h"

namespace vantora::embedded {

std::vector<host::WindowPtr> MakeWindows(BookHandle) { RefuseMember("Workbook.Windows"); }

}  // namespace vantora::embedded
