// Runs a command while this program has a DLL loaded, as Excel has it. Ends with the command's exit
// code, or with 100 when something of this can't be done.
//
//   hold-dll DLL COMMAND
#include <windows.h>

int wmain(int count, wchar_t** arguments) {
  constexpr int kNotDone = 100;
  if (count != 3 || !LoadLibraryW(arguments[1])) return kNotDone;
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, arguments[2], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process)) {
    return kNotDone;
  }
  DWORD exit_code = kNotDone;
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &exit_code);
  return static_cast<int>(exit_code);
}
