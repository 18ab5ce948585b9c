// What registering leaves in the registry, and that unregistering leaves nothing.
#include <gmock/gmock.h>

#include "Orvanemcro1.h"
#include "component/com/com_class.h"
#include "server/loaded_dll.h"

namespace vantora::com {
namespace {

std::wstring TextOf(REFGUID id) {
  wchar_t text[39] = L"";
  StringFromGUID2(id, text, 39);
  return text;
}

struct Scope {
  const char* name;
  HKEY root;
  const wchar_t* command_line;  // of DllInstall
};

void PrintTo(const Scope& scope, std::ostream* out) { *out << scope.name; }

class RegistrationTest : public ::testing::TestWithParam<Scope> {
 protected:
  // A default value, or the value `name`; "(none)" when there is none.
  std::wstring Read(const std::wstring& key, const wchar_t* name = nullptr) {
    wchar_t text[MAX_PATH] = L"";
    DWORD size = sizeof text;
    LSTATUS status = RegGetValueW(GetParam().root, (L"Software\\Classes\\" + key).c_str(), name,
                                  RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? text : L"(none)";
  }
  bool Exists(const std::wstring& key) {
    HKEY opened = nullptr;
    LSTATUS status = RegOpenKeyExW(GetParam().root, (L"Software\\Classes\\" + key).c_str(), 0,
                                   KEY_READ, &opened);
    if (status == ERROR_SUCCESS) RegCloseKey(opened);
    return status == ERROR_SUCCESS;
  }
  // Wine accepts a user's own type library, but does nothing with it.
  bool RegistersTypeLibrary() {
    bool is_wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return !is_wine || GetParam().root == HKEY_LOCAL_MACHINE;
  }
  // All keys at the top of what registering makes.
  std::vector<std::wstring> Keys() {
    std::vector<std::wstring> keys;
    if (RegistersTypeLibrary()) keys.push_back(L"TypeLib\\" + TextOf(LIBID_Orvanemcro1));
    for (const ComClass& com_class : ComClasses()) {
      keys.push_back(L"CLSID\\" + TextOf(com_class.class_id));
      keys.push_back(std::wstring(L"Orvanemcro1.") + com_class.name);
      if (!RegistersTypeLibrary()) continue;
      keys.push_back(L"Interface\\" + TextOf(com_class.interface_id));
    }
    return keys;
  }

  LoadedDll dll_;
};

TEST_P(RegistrationTest, RegistersEverythingAndRemovesItAgain) {
  ASSERT_EQ(dll_.Install(TRUE, GetParam().command_line), S_OK);
  ASSERT_EQ(dll_.Install(TRUE, GetParam().command_line), S_OK) << "again";
  for (const std::wstring& key : Keys()) EXPECT_TRUE(Exists(key)) << testing::PrintToString(key);
  for (const ComClass& com_class : ComClasses()) {
    std::wstring key = L"CLSID\\" + TextOf(com_class.class_id);
    std::wstring program_id = std::wstring(L"Orvanemcro1.") + com_class.name;
    EXPECT_EQ(Read(key + L"\\InprocServer32"), dll_.Path());
    EXPECT_EQ(Read(key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(Read(key + L"\\ProgID"), program_id);
    EXPECT_EQ(Read(key + L"\\TypeLib"), TextOf(LIBID_Orvanemcro1));
    EXPECT_EQ(Read(program_id + L"\\CLSID"), TextOf(com_class.class_id));
  }
  if (RegistersTypeLibrary()) {
    std::wstring key = L"TypeLib\\" + TextOf(LIBID_Orvanemcro1) + L"\\1.0\\0\\";
    EXPECT_EQ(Read(key + (sizeof(void*) == 8 ? L"win64" : L"win32")), dll_.Path());
  }

  EXPECT_EQ(dll_.Install(FALSE, GetParam().command_line), S_OK);
  for (const std::wstring& key : Keys()) EXPECT_FALSE(Exists(key)) << testing::PrintToString(key);
  EXPECT_EQ(dll_.Install(FALSE, GetParam().command_line), S_OK) << "nothing is registered";
}

INSTANTIATE_TEST_SUITE_P(All, RegistrationTest,
                         ::testing::Values(Scope{"Machine", HKEY_LOCAL_MACHINE, nullptr},
                                           Scope{"User", HKEY_CURRENT_USER, L"User"}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vantora::com
