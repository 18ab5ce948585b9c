#include <map>
#include <mutex>
#include <stdexcept>

#include "component/com/com_class.h"
#include "component/com/module.h"

namespace vantora::com {
namespace {

ComPtr<ITypeInfo> TypeInfoOf(ITypeLib& library, REFGUID id) {
  ComPtr<ITypeInfo> info;
  if (FAILED(library.GetTypeInfoOfGuid(id, info.Receive()))) {
    throw std::runtime_error("the component's type library does not describe one of its classes");
  }
  return info;
}

}  // namespace

TypeDescription::TypeDescription(ITypeLib& library, const ComClass& com_class)
    : class_info(TypeInfoOf(library, com_class.class_id)),
      interface_info(TypeInfoOf(library, com_class.interface_id)),
      dispatch_table(interface_info.get()) {}

ComPtr<ITypeLib> LoadTypeLibrary() {
  // Straight from this file: early-bound and late-bound calls work without any registration.
  ComPtr<ITypeLib> library;
  if (FAILED(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Receive()))) {
    throw std::runtime_error("the component's type library can't be read");
  }
  return library;
}

std::shared_ptr<const TypeDescription> DescriptionOf(const ComClass& com_class) {
  static std::mutex mutex;
  static std::map<const ComClass*, std::weak_ptr<const TypeDescription>> descriptions;
  std::lock_guard lock(mutex);
  std::weak_ptr<const TypeDescription>& known = descriptions[&com_class];
  std::shared_ptr<const TypeDescription> description = known.lock();
  if (!description) {
    description = std::make_shared<const TypeDescription>(*LoadTypeLibrary(), com_class);
    known = description;
  }
  return description;
}

}  // namespace vantora::com
