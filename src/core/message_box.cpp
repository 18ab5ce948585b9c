#include "core/message_box.h"

#include "core/convert.h"

namespace vantora {
namespace {

constexpr int kButtonSetMask = 0xF;
constexpr int kIconMask = 0xF0;

}  // namespace

std::vector<MessageBoxResult> ButtonsOf(int style) {
  switch (style & kButtonSetMask) {
    case kOkCancel:
      return {MessageBoxResult::kOk, MessageBoxResult::kCancel};
    case kYesNo:
      return {MessageBoxResult::kYes, MessageBoxResult::kNo};
    default:
      return {MessageBoxResult::kOk};
  }
}

std::size_t DefaultButtonOf(int style) {
  return (style & kDefaultButton2) != 0 && ButtonsOf(style).size() > 1 ? 1 : 0;
}

std::optional<MessageBoxResult> CloseResultOf(int style) {
  switch (style & kButtonSetMask) {
    case kOkCancel:
      return MessageBoxResult::kCancel;
    case kYesNo:
      return std::nullopt;
    default:
      return MessageBoxResult::kOk;
  }
}

std::string_view CaptionOf(MessageBoxResult button) {
  switch (button) {
    case MessageBoxResult::kOk:
      return "OK";
    case MessageBoxResult::kCancel:
      return "Cancel";
    case MessageBoxResult::kYes:
      return "Yes";
    case MessageBoxResult::kNo:
      return "No";
  }
  return "";
}

std::optional<MessageBoxResult> ButtonOfCaption(std::string_view caption) {
  for (MessageBoxResult button : {MessageBoxResult::kOk, MessageBoxResult::kCancel,
                                  MessageBoxResult::kYes, MessageBoxResult::kNo}) {
    if (EqualsIgnoreCase(caption, CaptionOf(button))) return button;
  }
  return std::nullopt;
}

std::string_view IconWordOf(int style) {
  switch (style & kIconMask) {
    case kCritical:
      return "Error";
    case kQuestion:
      return "Question";
    case kExclamation:
      return "Warning";
    case kInformation:
      return "Information";
    default:
      return "";
  }
}

}  // namespace vantora
