// What the engine asks of Windows besides the host application.
#pragma once

#include "core/user_interface.h"
#include "ui/windows/windows_user_interface.h"

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

// The services of one object. Its dialogs belong to the window in which the user started the macro:
// the host's, or one that a macro shows.
class WindowsServices {
 public:
  Services& services() { return services_; }

 private:
  ui::WindowsUserInterface user_interface_;
  WindowsClock clock_;
  WindowsFileVersions file_versions_;
  Services services_{user_interface_, clock_, file_versions_};
};

}  // namespace vantora::com
