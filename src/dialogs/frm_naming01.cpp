#include "dialogs/frm_naming01.h"

#include "core/convert.h"

namespace vantora {
namespace {

constexpr double kHeight = 222;
constexpr double kNameTop = 159;
constexpr double kButtonTop = 189;

}  // namespace

frmNaming01::frmNaming01()
    : NamingDialog("frmNaming01", "Vantora Excel Naming Help", kHeight, "",
                   {"Change the definition of that name to refer to this row",
                    "Leave the definition of that name alone, and use the new name I'm entering "
                    "below for this row"}),
      new_name_(Add<TextBox>(
          "txtNewName",
          Bounds{.left = kMargin, .top = kNameTop, .width = kWidth - 2 * kMargin, .height = 18})) {
  // Whoever types a name wants to use it.
  new_name_.on_change = [this] { Choose(2); };
  AddButtons(kButtonTop);
}

void frmNaming01::SetNameText(std::string_view text) { new_name_.SetText(TrimBlanks(text)); }

std::string frmNaming01::NameText() const { return std::string(TrimBlanks(new_name_.text())); }

}  // namespace vantora
