// What some of a form's controls are to each other.
#pragma once

#include <cstddef>
#include <optional>

#include "core/form.h"

namespace vantora::ui {

// Three labels that lie over one another: a background, a bar on it whose width shows a fraction,
// and the text over the bar. Windows can't overlap without flicker, so they are drawn as one.
struct Meter {
  const Label* back;
  const Label* bar;
  const Label* front;

  // Whether the control is drawn by the meter, at the place of `back`.
  bool Covers(const Control& control) const { return &control == bar || &control == front; }
  bool Has(const Control& control) const { return &control == back || Covers(control); }
};

// The labels `lblBack`, `lblBar` and `lblFront`; nullopt for a form without them.
std::optional<Meter> FindMeter(const Form& form);

// Whether an '&' of the label marks an accelerator: that of the text box, list or check box after
// it. In any other label it is part of the text, which may come from a sheet's name.
bool MarksAccelerator(const Form& form, std::size_t label);

// Whether the arrow keys stop before this control: they move among option buttons of one group, and
// among the controls between two groups.
bool StartsGroup(const Form& form, std::size_t control);

// Whether the Tab key goes to the option: to the pressed one of its group, to the first while none
// is pressed.
bool IsTabStop(const Form& form, const OptionButton& option);

}  // namespace vantora::ui
