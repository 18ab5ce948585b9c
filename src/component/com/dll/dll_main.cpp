// The entry points of the in-process server.
#include <cwchar>

#include "component/com/automation.h"
#include "component/com/automation_error.h"
#include "component/com/class_factory.h"
#include "component/com/com_class.h"
#include "component/com/registration.h"

namespace com = vantora::com;
using com::RegistrationScope;

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  const com::ComClass* com_class = com::FindComClass(class_id);
  if (!com_class) return CLASS_E_CLASSNOTAVAILABLE;
  HRESULT found = S_OK;
  HRESULT outcome = com::Guarded(IID_IClassFactory, com_class->name, [&] {
    auto factory = com::ComPtr<IClassFactory>::Adopt(new com::ClassFactory(*com_class));
    found = factory->QueryInterface(iid, object);
  });
  return FAILED(outcome) ? outcome : found;
}

STDAPI DllCanUnloadNow() { return com::ModuleUse::Any() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return com::Register(RegistrationScope::kMachine); }

STDAPI DllUnregisterServer() { return com::Unregister(RegistrationScope::kMachine); }

// `regsvr32 /n /i:user` registers for the current user, without administrator rights.
STDAPI DllInstall(BOOL install, PCWSTR command_line) {
  bool for_machine = !command_line || *command_line == L'\0';
  if (!for_machine && _wcsicmp(command_line, L"user") != 0) return E_INVALIDARG;
  RegistrationScope scope = for_machine ? RegistrationScope::kMachine : RegistrationScope::kUser;
  return install ? com::Register(scope) : com::Unregister(scope);
}
