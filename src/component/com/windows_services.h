// What the engine asks of Windows besides the host application.
#pragma once

#include <memory>

#include "core/user_interface.h"

namespace vantora::com {

class WindowsClock : public Clock {
 public:
  std::string NowAsGeneralDate() override;
};

class WindowsFileVersions : public FileVersions {
 public:
  std::string ProgramFilesFolder() override;
  std::size_t Size(std::string_view path) override;
  std::optional<std::vector<std::byte>> Read(std::string_view path, std::size_t size) override;
  std::optional<std::vector<std::byte>> Query(const std::vector<std::byte>& information,
                                              std::string_view entry) override;
};

// The services of one object of the server.
class ObjectServices {
 public:
  virtual ~ObjectServices() = default;
  virtual Services& services() = 0;
};

// Those of Windows. The dialogs belong to the window in which the user started the macro: the
// host's, or one that a macro shows. (Defined in a file of its own: a program that is linked with
// the server's objects may bring its own.)
std::unique_ptr<ObjectServices> MakeObjectServices();

}  // namespace vantora::com
