// A message box's style in words.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/user_interface.h"

namespace vantora {

// The buttons in the order they stand; never empty.
std::vector<MessageBoxResult> ButtonsOf(int style);
// The position in ButtonsOf that Enter presses.
std::size_t DefaultButtonOf(int style);
// What the box answers when it is closed without a button; nullopt for one that can't be closed.
std::optional<MessageBoxResult> CloseResultOf(int style);
// "OK", "Cancel", "Yes" or "No".
std::string_view CaptionOf(MessageBoxResult button);
// The button of that caption, upper and lower case alike; nullopt when there is none.
std::optional<MessageBoxResult> ButtonOfCaption(std::string_view caption);
// "Error", "Question", "Warning", "Information"; "" for a box without an icon.
std::string_view IconWordOf(int style);

}  // namespace vantora
