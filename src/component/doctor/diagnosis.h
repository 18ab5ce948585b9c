// What is wrong with the component's registration, in plain words.
#pragma once

#include <string>
#include <vector>

#include "component/doctor/registrations.h"

namespace vantora::doctor {

struct Finding {
  std::vector<std::wstring> names;  // the classes concerned
  std::wstring what;
  std::wstring what_to_do;
  // A notice is no fault: the component works, with a limit to know of.
  bool is_notice = false;
};

struct Circumstances {
  WordSize excel;           // the Excel that is to use the component
  FileVersion own_version;  // the doctor's, which comes with the component
};

// What is wrong with several classes in the same way is one finding.
std::vector<Finding> Diagnose(const std::vector<Registered>& classes,
                              const Registered& type_library, const Circumstances& circumstances);

}  // namespace vantora::doctor
