// The one place where exceptions end: a client sees an automation error with a number, a source and
// a text.
#pragma once

#include <string_view>
#include <utility>

#include "component/com/automation.h"

namespace vantora::com {

// Turns the exception that is being handled into an error of the interface `iid`, raised by the
// class `class_name`: sets the thread's error information and returns the result to hand back.
// A host's refusal keeps the host's own number, text and source.
HRESULT ReportCurrentException(REFIID iid, std::wstring_view class_name) noexcept;

// Runs `body` and returns S_OK, or what ReportCurrentException makes of what it throws.
template <typename Body>
HRESULT Guarded(REFIID iid, std::wstring_view class_name, Body&& body) noexcept {
  SetErrorInfo(0, nullptr);
  try {
    std::forward<Body>(body)();
    return S_OK;
  } catch (...) {
    return ReportCurrentException(iid, class_name);
  }
}

// The number that an automation client sees for a host's number: Excel's 1004 is 0x800A03EC. A
// number that is a failed result already stays as it is.
HRESULT ResultOfHostNumber(int number);

}  // namespace vantora::com
