#include "cli/call.h"

#include <charconv>
#include <memory>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "cli/run_options.h"
#include "core/convert.h"
#include "presentation/menu_management.h"

namespace vantora::cli {
namespace {

std::string Describe(const component::PublicClass& public_class, const component::Method& method) {
  return std::string(public_class.name) + "." + std::string(method.name);
}

// The elements of a JSON array; nullopt when the text is none, or has elements of other types.
template <typename Element>
std::optional<std::vector<Element>> ParseList(const std::string& text) {
  try {
    return nlohmann::json::parse(text).get<std::vector<Element>>();
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

// The elements numbered from 1 on.
template <typename Element>
std::vector<Element> Numbered(std::vector<Element> elements) {
  elements.insert(elements.begin(), Element{});
  return elements;
}

FilledArray Filled(const component::Parameter& parameter, const component::Argument& argument) {
  FilledArray filled{.parameter = std::string(parameter.name), .elements = {}};
  if (const auto* flags = std::get_if<std::vector<bool>>(&argument)) {
    filled.elements = *flags;
  } else {
    filled.elements = std::get<std::vector<std::string>>(argument);
  }
  if (parameter.type == component::ParameterType::kTexts) return filled;
  std::visit(
      [](auto& elements) {
        if (!elements.empty()) elements.erase(elements.begin());
      },
      filled.elements);
  return filled;
}

// Throws UsageError when the text is no value of the parameter's type.
component::Argument ParseArgument(const std::string& text, const component::Parameter& parameter) {
  switch (parameter.type) {
    case component::ParameterType::kText:
      return Value(text);
    case component::ParameterType::kInteger: {
      int number = 0;
      const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
      if (error == std::errc() && end == text.data() + text.size()) return Value(number);
      break;
    }
    case component::ParameterType::kBoolean:
      for (const std::string_view yes : {"true", "yes", "1"}) {
        if (EqualsIgnoreCase(text, yes)) return Value(true);
      }
      for (const std::string_view no : {"false", "no", "0"}) {
        if (EqualsIgnoreCase(text, no)) return Value(false);
      }
      break;
    case component::ParameterType::kTexts:
      if (auto texts = ParseList<std::string>(text)) return std::move(*texts);
      break;
    case component::ParameterType::kNumberedTexts:
      if (auto texts = ParseList<std::string>(text)) return Numbered(std::move(*texts));
      break;
    case component::ParameterType::kNumberedFlags:
      if (auto flags = ParseList<bool>(text)) return Numbered(std::move(*flags));
      break;
  }
  throw UsageError("The argument " + std::string(parameter.name) + " is a " +
                   std::string(NameOf(parameter.type)) + "; \"" + text + "\" is none.");
}

const component::PublicClass& ClassOf(const std::string& name) {
  const component::PublicClass* found = component::FindClass(name);
  if (found == nullptr) {
    throw UsageError("There is no class \"" + name + "\"; 'vantora list' shows all.");
  }
  return *found;
}

const component::Method& MethodOf(const component::PublicClass& public_class,
                                  const std::string& name) {
  const component::Method* found = component::FindMethod(public_class, name);
  if (found == nullptr) {
    throw UsageError("The class " + std::string(public_class.name) + " has no method \"" + name +
                     "\"; 'vantora list' shows all.");
  }
  return *found;
}

}  // namespace

std::string_view NameOf(component::ParameterType type) {
  switch (type) {
    case component::ParameterType::kText:
      return "text";
    case component::ParameterType::kInteger:
      return "whole number";
    case component::ParameterType::kBoolean:
      return "true or false";
    case component::ParameterType::kTexts:
    case component::ParameterType::kNumberedTexts:
      return R"(list of texts, such as ["a","b"])";
    case component::ParameterType::kNumberedFlags:
      return "list of true or false, such as [true,false]";
  }
  return "";
}

std::string NamesOf(const std::vector<component::Parameter>& parameters) {
  std::string names;
  for (const component::Parameter& parameter : parameters) {
    const std::string name(parameter.name);
    names += parameter.is_optional ? " [" + name + "]" : " " + name;
  }
  return names;
}

Call::Call(const std::string& class_name, const std::string& method_name,
           const std::vector<std::string>& arguments)
    : public_class_(&ClassOf(class_name)), method_(&MethodOf(*public_class_, method_name)) {
  const auto& parameters = method_->parameters;
  std::size_t required = 0;
  while (required < parameters.size() && !parameters[required].is_optional) ++required;
  if (arguments.size() < required || arguments.size() > parameters.size()) {
    throw UsageError(Describe(*public_class_, *method_) + " takes " +
                     (parameters.empty() ? "no arguments" : "the arguments" + NamesOf(parameters)) +
                     "; " + std::to_string(arguments.size()) + " given.");
  }
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    arguments_.push_back(i < arguments.size() ? ParseArgument(arguments[i], parameters[i])
                                              : component::Argument());
  }
}

Value Call::Run(Services& services, clsGlobals& globals) {
  if (EqualsIgnoreCase(public_class_->name, globals.class_name())) {
    return method_->call(globals, arguments_);
  }
  // The session has one menu object, which knows the menus that it made.
  if (const auto& menus = globals.Menus();
      menus && EqualsIgnoreCase(public_class_->name, menus->class_name())) {
    return method_->call(*menus, arguments_);
  }
  const std::unique_ptr<PublicObject> object = public_class_->create(services);
  auto* bound = dynamic_cast<BoundObject*>(object.get());
  if (bound != nullptr) bound->Init(&globals);
  return method_->call(*object, arguments_);
}

std::vector<FilledArray> Call::FilledArrays() const {
  std::vector<FilledArray> arrays;
  for (std::size_t i = 0; i < arguments_.size(); ++i) {
    const component::Parameter& parameter = method_->parameters[i];
    if (parameter.is_filled) arrays.push_back(Filled(parameter, arguments_[i]));
  }
  return arrays;
}

}  // namespace vantora::cli
