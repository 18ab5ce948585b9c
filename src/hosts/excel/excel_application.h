// Excel as a host: the host interfaces over its object model, late-bound.
#pragma once

#include <chrono>
#include <functional>

#include "core/host.h"

struct IDispatch;

namespace vantora::excel {

// Waits that long before a call that Excel was too busy for is tried again.
using WaitFunction = std::function<void(std::chrono::milliseconds)>;

// The host whose application object is `application` (Excel's `Application`), of which it keeps a
// reference of its own; null for null. It and all objects reached through it belong to the calling
// thread. Nothing is called yet. Every member throws HostError with what Excel says; a call that
// Excel is too busy for is tried again for ten seconds, then refused. `wait` is the thread's own
// sleep when left out.
host::ApplicationPtr MakeExcelApplication(IDispatch* application, WaitFunction wait = {});

// The very object that `application` was made of, as a reference that the caller does not own;
// null when it is another host's.
IDispatch* DispatchOf(host::Application& application);

}  // namespace vantora::excel
