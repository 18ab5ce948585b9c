#include "dialogs/frm_naming02.h"

namespace vantora {
namespace {

constexpr double kHeight = 228;
constexpr double kButtonTop = 195;

}  // namespace

frmNaming02::frmNaming02()
    : NamingDialog("frmNaming02", "Vantora Naming Help", kHeight,
                   "This row already has a name, choose from the actions below and click GO.",
                   {"Remove the definition of the prior name, and use the new name to define this "
                    "row. (Most likely what you want.)",
                    "Leave existing name alone, and don't apply the new name to this row. Existing "
                    "name will be shown in column I.",
                    "Define the new name on this row, but leave the prior name also defined as a "
                    "duplicate on this row. (Not preferred.)"}) {
  AddButtons(kButtonTop);
}

}  // namespace vantora
