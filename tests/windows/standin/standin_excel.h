// A stand-in for Excel, for tests: the workbooks of another host, offered as Excel offers its own.
#pragma once

#include "standin_object.h"

namespace vantora::standin {

// The Application object over `excel->application`.
ComPtr<IDispatch> MakeApplication(ExcelPtr excel);

}  // namespace vantora::standin
