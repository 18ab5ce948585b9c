// A method of a public class as the command line names it, with its arguments.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "component/class_table.h"
#include "core/globals.h"

namespace vantora::cli {

// An array that a method has filled, its elements without the one at 0 of a numbered one: as it is
// given on the command line.
struct FilledArray {
  std::string parameter;
  std::variant<std::vector<std::string>, std::vector<bool>> elements;
};

class Call {
 public:
  // Case-insensitive names. Throws UsageError for a class or method that does not exist, and for
  // arguments of the wrong number or kind.
  Call(const std::string& class_name, const std::string& method_name,
       const std::vector<std::string>& arguments);

  // Creates the object, initialises it with the session context and calls the method; for
  // clsMenuManagement the session's own object (`Menus`) takes the call, where it has one. Nothing
  // is called when the object refuses the context, which it has reported then. Throws what the
  // method throws.
  Value Run(Services& services, clsGlobals& globals);

  // After Run: the arrays that hold results.
  std::vector<FilledArray> FilledArrays() const;

 private:
  const component::PublicClass* public_class_;
  const component::Method* method_;
  std::vector<component::Argument> arguments_;
};

// What a value of the type is, for a reader ("whole number").
std::string_view NameOf(component::ParameterType type);
// The parameters' names, a blank before each; those that may be left out in brackets.
std::string NamesOf(const std::vector<component::Parameter>& parameters);

}  // namespace vantora::cli
