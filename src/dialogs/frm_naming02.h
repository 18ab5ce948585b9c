// Asks what to do with a row that has a name already.
#pragma once

#include "dialogs/naming_dialog.h"

namespace vantora {

class frmNaming02 final : public NamingDialog {
 public:
  frmNaming02();
};

}  // namespace vantora
