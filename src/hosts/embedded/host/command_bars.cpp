// The menu bar of the embedded host.
#include "host/objects.h"

namespace vantora::embedded {

host::CommandBarPtr MakeMenuBar(std::shared_ptr<ApplicationState>) {
  RefuseMember("CommandBars.ActiveMenuBar");
}

}  // namespace vantora::embedded
