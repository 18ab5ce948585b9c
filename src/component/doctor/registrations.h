// The registry's entries for the component, as programs of each word size see them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "component/doctor/program_file.h"

namespace vantora::doctor {

enum class Scope { kMachine, kUser };

// A part of the registry in which entries can stand.
struct Place {
  Scope scope;
  WordSize view;  // the programs that read it

  std::wstring Text() const;  // "all users, 64-bit"
};

inline constexpr std::array<Place, 4> kPlaces = {{{Scope::kMachine, WordSize::k64},
                                                  {Scope::kUser, WordSize::k64},
                                                  {Scope::kMachine, WordSize::k32},
                                                  {Scope::kUser, WordSize::k32}}};

struct Registration {
  Place place;
  std::wstring path;
  ProgramFile file;
  // Whether the entry is also found by the class's name, as `CreateObject` does.
  bool found_by_name = true;
};

// A public class or the type library, with the entries that exist.
struct Registered {
  std::wstring name;
  std::vector<Registration> registrations;
};

// One for each public class, in the order of the class table.
std::vector<Registered> ReadClasses();
Registered ReadTypeLibrary();

// The installed Excel; nothing when none is found.
struct Excel {
  std::wstring path;
  WordSize word_size;
};
std::optional<Excel> FindExcel();

}  // namespace vantora::doctor
