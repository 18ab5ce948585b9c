#include "component/doctor/diagnosis.h"

#include <algorithm>

namespace vantora::doctor {
namespace {

std::wstring SetUpFor(WordSize word_size) {
  return word_size == WordSize::k32 ? L"the x86 set-up" : L"the x64 set-up";
}

const Registration* FindIn(const Registered& registered, Scope scope, WordSize view) {
  for (const Registration& registration : registered.registrations) {
    if (registration.place.scope == scope && registration.place.view == view) return &registration;
  }
  return nullptr;
}

bool IsIn(const Registered& registered, WordSize view) {
  return FindIn(registered, Scope::kMachine, view) || FindIn(registered, Scope::kUser, view);
}

// Gathers findings; equal ones become one.
class Findings {
 public:
  void Add(const std::wstring& name, Finding finding) {
    auto same = std::find_if(findings_.begin(), findings_.end(),
                             [&](const Finding& other) { return other.what == finding.what; });
    if (same == findings_.end()) same = findings_.insert(same, std::move(finding));
    if (std::find(same->names.begin(), same->names.end(), name) == same->names.end()) {
      same->names.push_back(name);
    }
  }
  std::vector<Finding> Take() { return std::move(findings_); }

 private:
  std::vector<Finding> findings_;
};

// Whether Excel finds the class, and the library that the editor for macros shows, at all.
void CheckPresence(const Registered& registered, WordSize excel, bool others_are_registered,
                   Findings& findings) {
  const WordSize other = excel == WordSize::k64 ? WordSize::k32 : WordSize::k64;
  const std::wstring install = L"Install Vantora with " + SetUpFor(excel) + L".";
  if (IsIn(registered, excel)) {
    if (FindIn(registered, Scope::kMachine, excel)) return;
    findings.Add(registered.name,
                 {{},
                  L"Registered for this user only: other users, and programs run as administrator, "
                  L"do not find it.",
                  L"Nothing, if Excel is never run as administrator. Otherwise: " + install,
                  true});
  } else if (IsIn(registered, other)) {
    findings.Add(registered.name, {{},
                                   L"Registered for " + TextOf(other) +
                                       L" programs only; Excel is " + TextOf(excel) + L".",
                                   install});
  } else if (others_are_registered) {
    findings.Add(registered.name, {{},
                                   L"Not registered, though other parts are.",
                                   L"The registration is incomplete. " + install});
  } else {
    findings.Add(registered.name, {{}, L"Not registered.", install});
  }
}

// Where an entry is wrong, the set-up or regsvr32 writes it again.
std::wstring Repair(const Place& place) {
  if (place.scope == Scope::kMachine) {
    return L"Install Vantora again with " + SetUpFor(place.view) + L".";
  }
  return L"As this user, register an intact DLL with: regsvr32 /n /i:user PATH. Or remove this "
         L"user's entries with: regsvr32 /u /n /i:user PATH.";
}

void CheckFile(const std::wstring& name, const Registration& registration,
               const FileVersion& own_version, Findings& findings) {
  const Place& place = registration.place;
  const ProgramFile& file = registration.file;
  const std::wstring where = L" (" + place.Text() + L"): ";
  auto add = [&](const std::wstring& what) {
    findings.Add(name, {{}, registration.path + where + what, Repair(place)});
  };
  if (!file.exists) {
    add(L"the file does not exist.");
  } else if (file.word_size == WordSize::kUnknown) {
    add(L"the file is damaged, or not a program for this processor.");
  } else if (file.word_size != place.view) {
    add(L"the file is " + TextOf(file.word_size) + L", but registered for " + TextOf(place.view) +
        L" programs, which can't load it.");
  } else if (file.version < own_version) {
    add(L"the file has version " + file.version.Text() + L", older than this program's " +
        own_version.Text() + L".");
  }
  if (!registration.found_by_name) {
    findings.Add(name,
                 {{},
                  L"CreateObject does not find the class by its name (" + place.Text() + L").",
                  Repair(place)});
  }
}

}  // namespace

std::vector<Finding> Diagnose(const std::vector<Registered>& classes,
                              const Registered& type_library, const Circumstances& circumstances) {
  const WordSize excel = circumstances.excel;
  Findings findings;
  bool any = std::any_of(classes.begin(), classes.end(),
                         [&](const Registered& one) { return IsIn(one, excel); });
  auto check = [&](const Registered& registered) {
    CheckPresence(registered, excel, any, findings);
    for (const Registration& registration : registered.registrations) {
      CheckFile(registered.name, registration, circumstances.own_version, findings);
    }
  };
  for (const Registered& one : classes) check(one);
  check(type_library);
  return findings.Take();
}

}  // namespace vantora::doctor
