// Arrays that clients pass by reference: read into the engine's, and filled in place.
#pragma once

#include <string>
#include <vector>

#include "component/com/automation.h"

namespace vantora::com {

// A client's array of one dimension, of texts, Booleans, numbers or VARIANTs, with any lower bound,
// fixed or resizable; one that was never given a size has no elements. The client keeps it for as
// long as this lives. HostError 13 for what is no such array, or for an element that does not
// convert.
class ArrayArgument {
 public:
  // The array itself, a VARIANT that holds it, or a reference to either.
  explicit ArrayArgument(const VARIANT& argument);

  // The elements in order, from the lower bound on.
  std::vector<std::string> Texts() const;
  // The elements at their numbers: the one that the client calls 3 stands at 3. Numbers below the
  // lower bound are empty, elements below 0 are left out.
  std::vector<std::string> NumberedTexts() const;
  std::vector<bool> NumberedFlags() const;
  // Puts what stands at the numbers of the client's elements; its bounds stay.
  void PutNumbered(const std::vector<std::string>& texts);
  void PutNumbered(const std::vector<bool>& flags);

 private:
  // The element of that number, converted to `type`.
  void Get(LONG number, VARTYPE type, VARIANT* value) const;
  void Put(LONG number, const VARIANT& value);
  std::string TextAt(LONG number) const;
  // How long an array with an element for each number is.
  std::size_t NumberedSize() const;

  SAFEARRAY* array_ = nullptr;
  VARTYPE type_ = VT_EMPTY;
  LONG first_ = 0;
  LONG last_ = -1;
};

}  // namespace vantora::com
