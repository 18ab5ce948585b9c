// Defined names for whole rows of the model sheets, typed by the model's author into the name
// column of each row.
#pragma once

#include "core/public_object.h"

namespace vantora {

class clsNameManagement : public BoundObject {
 public:
  explicit clsNameManagement(Services& services) : BoundObject("clsNameManagement", services) {}

  // Defines the names that stand in the name column of the selected rows, asks where a name or a
  // row is in use, and writes the names back in the style that tells what became of them. Cancel in
  // a dialog ends it at once: what was defined and deleted before stays so.
  void NameDefinition();
  // Deletes the names that the Reference Sheet's names list marks as broken, after a confirmation.
  void NameCleanup();

 private:
  void DeleteFlaggedNames();
  // Runs the method's work; a failing host call ends it with a programming-error report.
  template <typename Work>
  void Reporting(Work work);
};

}  // namespace vantora
