// vantora-doctor: tells how the component is registered, what is wrong with it and what to do.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <string>

#include "component/com/module.h"
#include "component/doctor/diagnosis.h"
#include "component/doctor/program_file.h"
#include "component/doctor/registrations.h"
#include "ui/windows/window_text.h"

namespace {

using namespace vantora::doctor;

constexpr WordSize kOwnWordSize = sizeof(void*) == 8 ? WordSize::k64 : WordSize::k32;

// To a console every character comes out; a file or pipe gets UTF-8.
void Print(const std::wstring& text) {
  HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(output, &mode)) {
    DWORD written = 0;
    WriteConsoleW(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  } else {
    std::string utf8 = vantora::ui::ToUtf8(text);
    std::fwrite(utf8.data(), 1, utf8.size(), stdout);
  }
}

std::wstring Describe(const Registered& registered) {
  std::wstring text = registered.name + L"\n";
  if (registered.registrations.empty()) return text + L"  not registered\n";
  for (const Registration& registration : registered.registrations) {
    const ProgramFile& file = registration.file;
    text += L"  " + registration.place.Text() + L": " + registration.path;
    text += file.exists
                ? L" (" + TextOf(file.word_size) + L", version " + file.version.Text() + L")"
                : L" (no such file)";
    text += L"\n";
  }
  return text;
}

std::wstring Describe(const Finding& finding) {
  std::wstring names;
  for (const std::wstring& name : finding.names) names += (names.empty() ? L"" : L", ") + name;
  return (finding.is_notice ? L"Notice: " : L"Problem: ") + names + L": " + finding.what +
         L"\n  What to do: " + finding.what_to_do + L"\n";
}

// Returns whether the component is healthy.
bool Report() {
  const FileVersion own_version = ReadProgramFile(vantora::com::ModulePath()).version;
  Print(L"vantora-doctor " + own_version.Text() + L", " + TextOf(kOwnWordSize) + L"\n");
  const auto excel = FindExcel();
  const WordSize excel_word_size = excel ? excel->word_size : kOwnWordSize;
  Print(excel ? L"Excel: " + TextOf(excel_word_size) + L", " + excel->path + L"\n\n"
              : L"Excel: not found; this checks what a " + TextOf(excel_word_size) +
                    L" Excel would find\n\n");

  const auto classes = ReadClasses();
  const auto type_library = ReadTypeLibrary();
  for (const Registered& one : classes) Print(Describe(one));
  Print(Describe(type_library) + L"\n");

  bool healthy = true;
  for (const Finding& finding :
       Diagnose(classes, type_library, {.excel = excel_word_size, .own_version = own_version})) {
    Print(Describe(finding));
    healthy = healthy && finding.is_notice;
  }
  if (healthy) Print(L"Excel finds every class.\n");
  return healthy;
}

}  // namespace

int wmain() try { return Report() ? 0 : 1; } catch (const std::exception& error) {
  std::fprintf(stderr, "vantora-doctor: %s\n", error.what());
  return 1;
}
