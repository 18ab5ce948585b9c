// A call that Excel refuses, as the error that the engine's callers see.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

#include "core/host_error.h"

namespace vantora::excel {

// What a failing call says about itself; frees it.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;
  ~ExceptionInfo() { Free(); }

  const EXCEPINFO& get() const { return info_; }
  // Frees what an earlier call said and tells where the next one stores it.
  EXCEPINFO* Receive();
  // Lets the object add what it puts off until somebody asks.
  void Complete();

 private:
  void Free();

  EXCEPINFO info_{};
};

// Excel did not take the call because it is doing something else: a cell is being edited, a dialog
// box is open.
bool IsBusy(HRESULT result);

// Excel took the call and refuses what it asks for: an invalid name, a cell without a name.
bool IsRefusal(const HostError& error);

// The error for a call of `member` ("Range.Select") that ended with `result`. Excel's own number,
// source and description where `info` has them (`result` is DISP_E_EXCEPTION), else the number
// that a macro would see and a sentence that says what went wrong.
HostError CallError(HRESULT result, const EXCEPINFO& info, const std::string& member);
// The error for a call of `member` that Excel was too busy for during `seconds`.
HostError BusyError(HRESULT result, const std::string& member, int seconds);
// The errors of a macro that expects something else of a member than it gives.
HostError WrongTypeError(const std::string& member, const std::string& expected);
HostError NothingError(const std::string& member);

}  // namespace vantora::excel
