#include "cli/class_list.h"

#include "cli/call.h"
#include "component/class_table.h"

namespace vantora::cli {
namespace {

void WriteMethod(const component::Method& method, std::ostream& out) {
  out << "  " << method.name << NamesOf(method.parameters) << "\n      " << method.help << '\n';
  for (const auto& parameter : method.parameters) {
    out << "      " << parameter.name << " (" << NameOf(parameter.type) << "): " << parameter.help
        << '\n';
  }
  if (!method.asks.empty()) out << "      asks: " << method.asks << '\n';
}

}  // namespace

void WriteClassList(std::ostream& out) {
  for (const auto& public_class : component::PublicClasses()) {
    out << public_class.name << ": " << public_class.help << '\n';
    for (const auto& method : public_class.methods) WriteMethod(method, out);
  }
}

}  // namespace vantora::cli
