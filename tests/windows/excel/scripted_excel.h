// A scripted Excel with one workbook, as far as the host interfaces see it.
#pragma once

#include "scripted_object.h"

namespace vantora::excel::testing {

// Objects of the same name can be told to answer otherwise; they answer with each other as listed.
struct ScriptedExcel {
  explicit ScriptedExcel(Journal& journal);

  ComPtr<ScriptedObject> comment, interior, range, first_sheet, second_sheet, worksheets, name,
      names, workbook, application;
};

// The dispatch interface of `object` as an argument or an answer.
Variant Answer(const ComPtr<ScriptedObject>& object);

}  // namespace vantora::excel::testing
