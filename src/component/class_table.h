// The component's public classes: one table that everything which offers them to the outside reads
// (the command line, the COM server).
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/public_object.h"
#include "core/user_interface.h"
#include "core/value.h"

namespace vantora::component {

// Arrays are passed by reference: the method may fill them in place. The elements of kTexts stand
// in the array's order, those of the numbered ones at their numbers (the element at 0 is not used).
enum class ParameterType { kText, kInteger, kBoolean, kTexts, kNumberedTexts, kNumberedFlags };

struct Parameter {
  std::string_view name;
  ParameterType type;
  std::string_view help;
  // May be left out, at the end only.
  bool is_optional = false;
  // An array that holds a result after the call.
  bool is_filled = false;
};

// An argument of its parameter's type: a Value (the empty one for an optional argument that was
// left out), an array of texts, or for kNumberedFlags one of Booleans.
using Argument = std::variant<Value, std::vector<std::string>, std::vector<bool>>;

struct Method {
  std::string_view name;
  std::vector<Parameter> parameters;
  // What the method asks the user while it runs ("" when nothing): message boxes and dialogs.
  std::string_view asks;
  // One line on what it does.
  std::string_view help;
  // Calls it with as many arguments as there are parameters, each of its parameter's type; returns
  // the method's result, empty for a method without one.
  std::function<Value(PublicObject& object, std::span<Argument> arguments)> call;
};

struct PublicClass {
  std::string_view name;
  std::string_view help;
  // In declaration order; `Init` and the members that hold objects (`App`, `Menus`) are not listed.
  std::vector<Method> methods;
  // Creates an object that is not yet initialised.
  std::function<std::unique_ptr<PublicObject>(Services& services)> create;
};

// All 16 classes in declaration order.
const std::vector<PublicClass>& PublicClasses();

// Both case-insensitive; null when there is none.
const PublicClass* FindClass(std::string_view name);
const Method* FindMethod(const PublicClass& public_class, std::string_view name);

}  // namespace vantora::component
