// The public classes as the server offers them.
#pragma once

#include <memory>
#include <span>

#include "component/com/automation.h"
#include "component/com/dispatch_table.h"

namespace vantora::com {

struct ComClass {
  const wchar_t* name;  // "clsGlobals"
  const CLSID& class_id;
  const IID& interface_id;  // of its dual interface
  // Creates an object with one reference, which the caller owns. Throws std::bad_alloc.
  IUnknown* (*create)(const ComClass& com_class);
};

// In the order of the class table; those of it that exist.
std::span<const ComClass> ComClasses();
// Null when there is none.
const ComClass* FindComClass(REFCLSID class_id);

// What the type library in this DLL tells of a class.
struct TypeDescription {
  TypeDescription(ITypeLib& library, const ComClass& com_class);

  ComPtr<ITypeInfo> class_info;
  ComPtr<ITypeInfo> interface_info;
  DispatchTable dispatch_table;
};

// Throws std::runtime_error when the type library can't be read.
ComPtr<ITypeLib> LoadTypeLibrary();

// Shared by all objects of the class while one of them uses it. Throws std::runtime_error when the
// type library can't be read.
std::shared_ptr<const TypeDescription> DescriptionOf(const ComClass& com_class);

}  // namespace vantora::com
