// A failing host call.
#pragma once

#include <stdexcept>
#include <string>

namespace vantora {

// Raised by every host interface when the host refuses a call. It carries what the host itself
// says, so that the caller of an operation (a workbook macro, the command line) sees the host's
// own number, text and source.
class HostError : public std::runtime_error {
 public:
  // The number under which Excel reports most refusals of its object model.
  static constexpr int kApplicationDefined = 1004;
  // Numbers of Excel's macro language.
  static constexpr int kOverflow = 6;
  static constexpr int kSubscriptOutOfRange = 9;
  static constexpr int kTypeMismatch = 13;
  static constexpr int kObjectNotSet = 91;
  static constexpr int kMemberNotSupported = 438;

  HostError(int number, const std::string& description, std::string source = "Microsoft Excel")
      : std::runtime_error(description), number_(number), source_(std::move(source)) {}

  int number() const { return number_; }
  std::string description() const { return what(); }
  const std::string& source() const { return source_; }

 private:
  int number_;
  std::string source_;
};

// What the component's own macro language raises, under one of its numbers above.
inline HostError MacroError(int number, const std::string& description) {
  return HostError(number, description, "Orvanemcro1");
}

}  // namespace vantora
