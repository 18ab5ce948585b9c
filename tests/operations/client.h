// The component's objects as the tests of operations use them. What stands behind them differs from
// program to program: the engine's classes themselves, or the automation server's objects and the
// Excel host.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/host.h"
#include "core/user_interface.h"
#include "core/value.h"

namespace vantora::testing {

// An object of a public class. What its members throw is the same wherever it lives: HostError for
// what the host refuses.
class Client {
 public:
  // Creates the object and calls Init. Without an application, Init is not called. The services
  // must outlive the client.
  Client(std::string_view class_name, Services& services, host::ApplicationPtr application);
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // Calls Init with the application once more.
  void Init();
  void Call(std::string_view method, const std::vector<Value>& arguments = {});

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

class YearEndClient : public Client {
 public:
  YearEndClient(Services& services, host::ApplicationPtr application)
      : Client("clsYearEnd", services, std::move(application)) {}

  void SaveHistoryYear() { Call("SaveHistoryYear"); }
  void SaveCurrentYear() { Call("SaveCurrentYear"); }
  void SaveLastYear() { Call("SaveLastYear"); }
  void ShiftHistory() { Call("ShiftHistory"); }
  void CopyCurrentYear() { Call("CopyCurrentYear"); }
};

class RefSheetClient : public Client {
 public:
  RefSheetClient(Services& services, host::ApplicationPtr application)
      : Client("clsRefSheet", services, std::move(application)) {}

  void PutDLLVersion(std::string_view text) { Call("PutDLLVersion", {text}); }
};

}  // namespace vantora::testing
