#include "component/com/registration.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "component/com/com_class.h"
#include "component/com/module.h"
// After the automation headers.
#include <olectl.h>

// In the import library, but in no header.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor,
                                                   LCID locale, SYSKIND system);

namespace vantora::com {
namespace {

constexpr std::wstring_view kClassesKey = L"Software\\Classes\\";
#ifdef _WIN64
constexpr REGSAM kOtherWordSize = KEY_WOW64_32KEY;
#else
constexpr REGSAM kOtherWordSize = KEY_WOW64_64KEY;
#endif

std::wstring TextOf(REFGUID id) {
  constexpr int kTextSize = 39;
  wchar_t text[kTextSize];
  StringFromGUID2(id, text, kTextSize);
  return text;
}

std::wstring ProgramId(const ComClass& com_class) {
  return std::wstring(L"Orvanemcro1.") + com_class.name;
}

// The branch of the registry that holds the classes of a scope.
class ClassesBranch {
 public:
  explicit ClassesBranch(RegistrationScope scope)
      : root_(scope == RegistrationScope::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE) {}

  // Both return whether it worked. Without a name it is the key's default value.
  bool Set(const std::wstring& key, const wchar_t* name, const std::wstring& text) const {
    DWORD size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(root_, Path(key).c_str(), name, REG_SZ, text.c_str(), size) ==
           ERROR_SUCCESS;
  }
  // With everything below it. A key that does not exist is deleted already.
  bool Delete(const std::wstring& key) const {
    LSTATUS status = RegDeleteTreeW(root_, Path(key).c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
  }
  bool Exists(const std::wstring& key) const { return Opens(key, 0); }
  bool ExistsForOtherWordSize(const std::wstring& key) const { return Opens(key, kOtherWordSize); }

 private:
  bool Opens(const std::wstring& key, REGSAM view) const {
    HKEY opened = nullptr;
    LSTATUS status = RegOpenKeyExW(root_, Path(key).c_str(), 0, KEY_READ | view, &opened);
    if (status == ERROR_SUCCESS) RegCloseKey(opened);
    return status == ERROR_SUCCESS;
  }
  static std::wstring Path(const std::wstring& key) { return std::wstring(kClassesKey) + key; }

  HKEY root_;
};

struct ReleaseAttributes {
  ITypeLib* library;
  void operator()(TLIBATTR* attributes) const { library->ReleaseTLibAttr(attributes); }
};

// The type library in this file, with its identity.
class Library {
 public:
  // Throws std::runtime_error when it can't be read.
  Library() : library_(LoadTypeLibrary()) {
    TLIBATTR* attributes = nullptr;
    if (FAILED(library_->GetLibAttr(&attributes))) {
      throw std::runtime_error("the component's type library has no identity");
    }
    attributes_ = {attributes, {library_.get()}};
  }

  REFGUID id() const { return attributes_->guid; }

  bool Register(RegistrationScope scope, std::wstring path) const {
    return SUCCEEDED(scope == RegistrationScope::kUser
                         ? RegisterTypeLibForUser(library_.get(), path.data(), nullptr)
                         : RegisterTypeLib(library_.get(), path.data(), nullptr));
  }

  bool Unregister(RegistrationScope scope) const {
    if (!ClassesBranch(scope).Exists(RegistryKey())) return true;
    auto unregister =
        scope == RegistrationScope::kUser ? UnRegisterTypeLibForUser : UnRegisterTypeLib;
    return SUCCEEDED(unregister(attributes_->guid, attributes_->wMajorVerNum,
                                attributes_->wMinorVerNum, attributes_->lcid,
                                attributes_->syskind));
  }

  std::wstring Version() const {
    return std::to_wstring(attributes_->wMajorVerNum) + L"." +
           std::to_wstring(attributes_->wMinorVerNum);
  }

 private:
  // Of this word size's entry.
  std::wstring RegistryKey() const {
    const wchar_t* system = attributes_->syskind == SYS_WIN64 ? L"win64" : L"win32";
    return L"TypeLib\\" + TextOf(attributes_->guid) + L"\\" + Version() + L"\\0\\" + system;
  }

  ComPtr<ITypeLib> library_;
  std::unique_ptr<TLIBATTR, ReleaseAttributes> attributes_;
};

bool RegisterClass(const ClassesBranch& branch, const ComClass& com_class, const std::wstring& path,
                   const Library& library) {
  const std::wstring class_id = TextOf(com_class.class_id);
  const std::wstring class_key = L"CLSID\\" + class_id;
  const std::wstring program_id = ProgramId(com_class);
  return branch.Set(class_key, nullptr, program_id) &&
         branch.Set(class_key + L"\\InprocServer32", nullptr, path) &&
         branch.Set(class_key + L"\\InprocServer32", L"ThreadingModel", L"Apartment") &&
         branch.Set(class_key + L"\\ProgID", nullptr, program_id) &&
         branch.Set(class_key + L"\\VersionIndependentProgID", nullptr, program_id) &&
         branch.Set(class_key + L"\\TypeLib", nullptr, TextOf(library.id())) &&
         branch.Set(class_key + L"\\Version", nullptr, library.Version()) &&
         branch.Set(class_key + L"\\Programmable", nullptr, L"") &&
         branch.Set(program_id, nullptr, program_id) &&
         branch.Set(program_id + L"\\CLSID", nullptr, class_id);
}

bool UnregisterClass(const ClassesBranch& branch, const ComClass& com_class) {
  const std::wstring class_key = L"CLSID\\" + TextOf(com_class.class_id);
  bool deleted = branch.Delete(class_key);
  // Both word sizes share the name.
  if (branch.ExistsForOtherWordSize(class_key)) return deleted;
  return branch.Delete(ProgramId(com_class)) && deleted;
}

}  // namespace

HRESULT Register(RegistrationScope scope) noexcept try {
  const Library library;
  const std::wstring path = ModulePath();
  const ClassesBranch branch(scope);
  for (const ComClass& com_class : ComClasses()) {
    if (RegisterClass(branch, com_class, path, library)) continue;
    Unregister(scope);
    return SELFREG_E_CLASS;
  }
  if (library.Register(scope, path)) return S_OK;
  Unregister(scope);
  return SELFREG_E_TYPELIB;
} catch (...) {
  return SELFREG_E_TYPELIB;
}

HRESULT Unregister(RegistrationScope scope) noexcept try {
  const ClassesBranch branch(scope);
  bool classes_removed = true;
  for (const ComClass& com_class : ComClasses()) {
    classes_removed = UnregisterClass(branch, com_class) && classes_removed;
  }
  bool library_removed = Library().Unregister(scope);
  if (!classes_removed) return SELFREG_E_CLASS;
  return library_removed ? S_OK : SELFREG_E_TYPELIB;
} catch (...) {
  return SELFREG_E_TYPELIB;
}

}  // namespace vantora::com
