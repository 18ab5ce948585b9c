// clsRefSheet as the workbook's macros see it.
#pragma once

#include <string>
#include <vector>

#include "Orvanemcro1.h"
#include "component/com/array_argument.h"
#include "component/com/bound_automation_object.h"
#include "refsheet/ref_sheet.h"

namespace vantora::com {

class RefSheetObject final : public BoundAutomationObject<_clsRefSheet, clsRefSheet> {
 public:
  explicit RefSheetObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP PutDLLVersion(BSTR version_text) override {
    return Run([&] { object().PutDLLVersion(excel::ToUtf8(version_text)); });
  }
  STDMETHODIMP KeysListSelect() override { return Call(&clsRefSheet::KeysListSelect); }
  STDMETHODIMP KeysListDeselect() override { return Call(&clsRefSheet::KeysListDeselect); }
  STDMETHODIMP KeysListClear() override { return Call(&clsRefSheet::KeysListClear); }
  STDMETHODIMP KeysListIsDefined(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::KeysListIsDefined, result);
  }
  STDMETHODIMP KeysListLoadKeysCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::KeysListIsDefined, &clsRefSheet::KeysListLoadKeysCol, values, count);
  }
  STDMETHODIMP KeysListLoadSheetsCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::KeysListIsDefined, &clsRefSheet::KeysListLoadSheetsCol, values,
                count);
  }
  STDMETHODIMP KeysListLoadColsCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::KeysListIsDefined, &clsRefSheet::KeysListLoadColsCol, values, count);
  }
  STDMETHODIMP KeysListSortbyKey() override { return Call(&clsRefSheet::KeysListSortbyKey); }
  STDMETHODIMP KeysListSortbySheet() override { return Call(&clsRefSheet::KeysListSortbySheet); }
  STDMETHODIMP KeysListResetSortButtons() override {
    return Call(&clsRefSheet::KeysListResetSortButtons);
  }
  STDMETHODIMP NamesListSelect(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::NamesListSelect, result);
  }
  STDMETHODIMP NamesListDeselect() override { return Call(&clsRefSheet::NamesListDeselect); }
  STDMETHODIMP NamesListIsDefined(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::NamesListIsDefined, result);
  }
  STDMETHODIMP NamesListPopulate() override { return Call(&clsRefSheet::NamesListPopulate); }
  STDMETHODIMP NamesListSortbyName() override { return Call(&clsRefSheet::NamesListSortbyName); }
  STDMETHODIMP NamesListSortbySheet() override { return Call(&clsRefSheet::NamesListSortbySheet); }
  STDMETHODIMP DiscrListSelect() override { return Call(&clsRefSheet::DiscrListSelect); }
  STDMETHODIMP DiscrListDeselect() override { return Call(&clsRefSheet::DiscrListDeselect); }
  STDMETHODIMP DiscrListClear() override { return Call(&clsRefSheet::DiscrListClear); }
  STDMETHODIMP DiscrListIsDefined(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::DiscrListIsDefined, result);
  }
  STDMETHODIMP DiscrListLoadCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::DiscrListIsDefined, &clsRefSheet::DiscrListLoadCol, values, count);
  }
  STDMETHODIMP ChartsListSelect() override { return Call(&clsRefSheet::ChartsListSelect); }
  STDMETHODIMP ChartsListDeselect() override { return Call(&clsRefSheet::ChartsListDeselect); }
  STDMETHODIMP ChartsListClear() override { return Call(&clsRefSheet::ChartsListClear); }
  STDMETHODIMP ChartsListIsDefined(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::ChartsListIsDefined, result);
  }
  STDMETHODIMP ChartsListKeysListLoadColsCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::ChartsListIsDefined, &clsRefSheet::ChartsListKeysListLoadColsCol,
                values, count);
  }
  STDMETHODIMP ChartsListLoadPosCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::ChartsListIsDefined, &clsRefSheet::ChartsListLoadPosCol, values,
                count);
  }
  STDMETHODIMP ChartsListLoadTitlesCol(VARIANT* values, LONG count) override {
    return Load(&clsRefSheet::ChartsListIsDefined, &clsRefSheet::ChartsListLoadTitlesCol, values,
                count);
  }
  STDMETHODIMP ChartsListSort() override { return Call(&clsRefSheet::ChartsListSort); }
  STDMETHODIMP ChartsListIteratorInit() override {
    return Call(&clsRefSheet::ChartsListIteratorInit);
  }
  STDMETHODIMP ChartsListIteratorNext() override {
    return Call(&clsRefSheet::ChartsListIteratorNext);
  }
  STDMETHODIMP ChartsListIteratorIsMore(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::ChartsListIteratorIsMore, result);
  }
  STDMETHODIMP ChartsTitle(BSTR* text) override { return Call(&clsRefSheet::ChartsTitle, text); }
  STDMETHODIMP ChartsColumn(LONG* number) override {
    return Call(&clsRefSheet::ChartsColumn, number);
  }
  STDMETHODIMP ConfigsListGet(VARIANT* configs) override;
  STDMETHODIMP cCount(SHORT* number) override { return Call(&clsRefSheet::cCount, number); }
  STDMETHODIMP ConfigsListPut(VARIANT* configs) override;
  STDMETHODIMP ConfigsListIsDefined(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::ConfigsListIsDefined, result);
  }
  STDMETHODIMP ConfigsListIteratorInit() override {
    return Call(&clsRefSheet::ConfigsListIteratorInit);
  }
  STDMETHODIMP ConfigsListIteratorNext() override {
    return Call(&clsRefSheet::ConfigsListIteratorNext);
  }
  STDMETHODIMP ConfigsListIteratorIsMore(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::ConfigsListIteratorIsMore, result);
  }
  STDMETHODIMP ConfigsName(BSTR* text) override { return Call(&clsRefSheet::ConfigsName, text); }
  STDMETHODIMP ConfigsNum(SHORT* number) override { return Call(&clsRefSheet::ConfigsNum, number); }
  STDMETHODIMP MenusListIteratorInit() override {
    return Call(&clsRefSheet::MenusListIteratorInit);
  }
  STDMETHODIMP MenusListIteratorNext() override {
    return Call(&clsRefSheet::MenusListIteratorNext);
  }
  STDMETHODIMP MenusListIteratorIsMore(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::MenusListIteratorIsMore, result);
  }
  STDMETHODIMP MenusListItem(BSTR* text) override {
    return Call(&clsRefSheet::MenusListItem, text);
  }
  STDMETHODIMP MenusListSubItem(BSTR* text) override {
    return Call(&clsRefSheet::MenusListSubItem, text);
  }
  STDMETHODIMP MenusListMacroName(BSTR* text) override {
    return Call(&clsRefSheet::MenusListMacroName, text);
  }
  STDMETHODIMP MenusListFaceID(SHORT* number) override {
    return Call(&clsRefSheet::MenusListFaceID, number);
  }
  STDMETHODIMP MenusListIsDefined(VARIANT_BOOL* result) override {
    return Call(&clsRefSheet::MenusListIsDefined, result);
  }

 private:
  // Writes the elements of the client's array, from its lower bound on. Without the list nothing is
  // done, whatever was passed.
  HRESULT Load(bool (clsRefSheet::*is_defined)(),
               void (clsRefSheet::*member)(const std::vector<std::string>&, int), VARIANT* values,
               LONG count) {
    if (!values) return E_POINTER;
    return Run([&] {
      if ((object().*is_defined)()) (object().*member)(ArrayArgument(*values).Texts(), count);
    });
  }
};

inline STDMETHODIMP RefSheetObject::ConfigsListGet(VARIANT* configs) {
  if (!configs) return E_POINTER;
  return Run([&] {
    if (!object().ConfigsListIsDefined()) return;  // the client's array stays as it is
    ArrayArgument array(*configs);
    std::vector<std::string> texts = array.NumberedTexts();
    object().ConfigsListGet(texts);
    array.PutNumbered(texts);
  });
}

inline STDMETHODIMP RefSheetObject::ConfigsListPut(VARIANT* configs) {
  if (!configs) return E_POINTER;
  return Run([&] {
    if (!object().ConfigsListIsDefined()) return;
    object().ConfigsListPut(ArrayArgument(*configs).NumberedTexts());
  });
}

}  // namespace vantora::com
