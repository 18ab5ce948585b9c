#include "core/globals.h"

#include "core/common.h"

namespace vantora {

std::string clsGlobals::Version() const { return LookUpVersion(services_.file_versions); }

}  // namespace vantora
