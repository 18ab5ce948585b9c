// What operations ask of the user through the host itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantora::embedded {

// A program that opens a workbook answers these, or puts them to its user.
class Prompts {
 public:
  virtual ~Prompts() = default;

  // Cells as a text ("Planning!J4:N9,Planning!J12:N14"), nullopt when the user cancels. Asked again
  // when the answer is no reference: `refusal` then says why, else it is empty.
  virtual std::optional<std::string> InputRange(std::string_view prompt, std::string_view title,
                                                std::string_view refusal) = 0;
  // As host::Application::GetSaveAsFilename.
  virtual std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                                       std::string_view file_filter,
                                                       std::string_view title) = 0;
};

}  // namespace vantora::embedded
