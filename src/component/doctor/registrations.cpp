#include "component/doctor/registrations.h"

#include <algorithm>

#include "component/com/com_class.h"
// After the automation headers.
#include "Orvanemcro1.h"

namespace vantora::doctor {
namespace {

std::wstring TextOf(REFGUID id) {
  constexpr int kTextSize = 39;
  wchar_t text[kTextSize];
  StringFromGUID2(id, text, kTextSize);
  return text;
}

// A key's default value, without quotes around it; nothing when there is none.
std::optional<std::wstring> ReadDefault(const Place& place, const std::wstring& key) {
  HKEY root = place.scope == Scope::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  REGSAM view = place.view == WordSize::k64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, (L"Software\\" + key).c_str(), 0, KEY_READ | view, &opened) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  constexpr std::size_t kLongestPath = 32768;
  std::wstring text(kLongestPath, L'\0');
  DWORD size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  // Reads a text with variables too, and expands it.
  LSTATUS status =
      RegGetValueW(opened, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &size);
  RegCloseKey(opened);
  if (status != ERROR_SUCCESS) return std::nullopt;
  text.resize(text.find(L'\0'));
  if (text.size() >= 2 && text.front() == L'"' && text.back() == L'"') {
    text = text.substr(1, text.size() - 2);
  }
  return text;
}

bool HasView(WordSize view) {
  if (view == WordSize::k32 || sizeof(void*) == 8) return true;
  BOOL on_64_bit_windows = FALSE;
  return IsWow64Process(GetCurrentProcess(), &on_64_bit_windows) && on_64_bit_windows;
}

// Where both views of a user's classes are one and the same (in Wine they are), an entry counts for
// the programs that can load its file.
void RemoveOtherViewOfSame(std::vector<Registration>& registrations) {
  auto repeats = [&](const Registration& other, const Registration& one) {
    return one.place.scope == Scope::kUser && other.place.scope == Scope::kUser &&
           one.place.view != other.place.view && one.path == other.path &&
           one.file.word_size == one.place.view;
  };
  std::erase_if(registrations, [&, all = registrations](const Registration& other) {
    return std::any_of(all.begin(), all.end(),
                       [&](const Registration& one) { return repeats(other, one); });
  });
}

template <typename KeyOf>
std::vector<Registration> ReadEverywhere(KeyOf key_of) {
  std::vector<Registration> registrations;
  for (const Place& place : kPlaces) {
    if (!HasView(place.view)) continue;
    std::optional<std::wstring> path = ReadDefault(place, key_of(place));
    if (path) registrations.push_back({place, *path, ReadProgramFile(*path)});
  }
  RemoveOtherViewOfSame(registrations);
  return registrations;
}

Registered ReadClass(const com::ComClass& com_class) {
  const std::wstring id = TextOf(com_class.class_id);
  Registered found = {com_class.name, ReadEverywhere([&](const Place&) {
                        return L"Classes\\CLSID\\" + id + L"\\InprocServer32";
                      })};
  for (Registration& registration : found.registrations) {
    auto named =
        ReadDefault(registration.place, L"Classes\\Orvanemcro1." + found.name + L"\\CLSID");
    registration.found_by_name = named && _wcsicmp(named->c_str(), id.c_str()) == 0;
  }
  return found;
}

}  // namespace

std::wstring Place::Text() const {
  return (scope == Scope::kMachine ? L"all users, " : L"this user, ") +
         vantora::doctor::TextOf(view);
}

std::vector<Registered> ReadClasses() {
  std::vector<Registered> classes;
  for (const com::ComClass& com_class : com::ComClasses()) classes.push_back(ReadClass(com_class));
  return classes;
}

Registered ReadTypeLibrary() {
  return {L"Type library", ReadEverywhere([](const Place& place) {
            return L"Classes\\TypeLib\\" + TextOf(LIBID_Orvanemcro1) + L"\\1.0\\0\\" +
                   (place.view == WordSize::k64 ? L"win64" : L"win32");
          })};
}

std::optional<Excel> FindExcel() {
  const std::wstring key = L"Microsoft\\Windows\\CurrentVersion\\App Paths\\excel.exe";
  for (const Place& place : kPlaces) {
    if (!HasView(place.view)) continue;
    std::optional<std::wstring> path = ReadDefault(place, key);
    if (!path) continue;
    WordSize word_size = ReadProgramFile(*path).word_size;
    if (word_size != WordSize::kUnknown) return Excel{*path, word_size};
  }
  return std::nullopt;
}

}  // namespace vantora::doctor
