// The real DLL, loaded without any registration.
#pragma once

#include <string>

#include "component/com/automation.h"

namespace vantora::com {

class LoadedDll {
 public:
  LoadedDll() : module_(LoadLibraryW(VANTORA_DLL)) {}
  ~LoadedDll() { FreeLibrary(module_); }
  LoadedDll(const LoadedDll&) = delete;
  LoadedDll& operator=(const LoadedDll&) = delete;

  bool loaded() const { return module_ != nullptr; }
  // The path that Windows has for it.
  std::wstring Path() const {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(module_, path, MAX_PATH);
    return path;
  }

  HRESULT GetClassObject(REFCLSID class_id, REFIID iid, void** object) const {
    return Function<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(class_id, iid,
                                                                                     object);
  }
  HRESULT CanUnloadNow() const { return Function<HRESULT(WINAPI*)()>("DllCanUnloadNow")(); }
  HRESULT Register() const { return Function<HRESULT(WINAPI*)()>("DllRegisterServer")(); }
  HRESULT Unregister() const { return Function<HRESULT(WINAPI*)()>("DllUnregisterServer")(); }
  HRESULT Install(BOOL install, const wchar_t* command_line) const {
    return Function<HRESULT(WINAPI*)(BOOL, PCWSTR)>("DllInstall")(install, command_line);
  }

  // A new object of the class; empty when it can't be made.
  template <typename Interface>
  ComPtr<Interface> Create(REFCLSID class_id) const {
    ComPtr<IClassFactory> factory;
    ComPtr<Interface> object;
    if (SUCCEEDED(GetClassObject(class_id, IID_IClassFactory,
                                 reinterpret_cast<void**>(factory.Receive())))) {
      factory->CreateInstance(nullptr, __uuidof(Interface),
                              reinterpret_cast<void**>(object.Receive()));
    }
    return object;
  }

 private:
  template <typename Pointer>
  Pointer Function(const char* name) const {
    return reinterpret_cast<Pointer>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  HMODULE module_;
};

}  // namespace vantora::com
