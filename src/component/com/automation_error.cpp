#include "component/com/automation_error.h"

#include <new>
#include <string>

#include "core/host_error.h"
#include "ui/windows/window_text.h"

namespace vantora::com {
namespace {

void SetErrorInformation(REFIID iid, std::wstring source, std::wstring text) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.Receive()))) return;
  creator->SetGUID(iid);
  creator->SetSource(source.data());
  creator->SetDescription(text.data());
  SetErrorInfo(0, creator.As<IErrorInfo>().get());
}

std::wstring ProgramId(std::wstring_view class_name) {
  return L"Orvanemcro1." + std::wstring(class_name);
}

HRESULT Report(REFIID iid, std::wstring_view class_name) {
  try {
    throw;
  } catch (const HostError& error) {
    SetErrorInformation(iid, ui::ToUtf16(error.source()), ui::ToUtf16(error.description()));
    return ResultOfHostNumber(error.number());
  } catch (const std::bad_alloc&) {
    SetErrorInformation(iid, ProgramId(class_name),
                        L"There is not enough memory to go on. Close other workbooks or programs "
                        L"and run the operation again.");
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    SetErrorInformation(iid, ProgramId(class_name),
                        L"The operation was ended by an error within Vantora: " +
                            ui::ToUtf16(error.what()) +
                            L". Please contact Vantora support with this text.");
    return E_FAIL;
  } catch (...) {
    SetErrorInformation(iid, ProgramId(class_name),
                        L"The operation was ended by an unknown error within Vantora. Please "
                        L"contact Vantora support.");
    return E_FAIL;
  }
}

}  // namespace

HRESULT ResultOfHostNumber(int number) {
  constexpr int kLargestNumber = 0xFFFF;
  if (number < 0) return number;
  if (number == 0 || number > kLargestNumber) return E_FAIL;
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

HRESULT ReportCurrentException(REFIID iid, std::wstring_view class_name) noexcept {
  try {
    return Report(iid, class_name);
  } catch (...) {  // there is no memory for the text either
    return E_OUTOFMEMORY;
  }
}

}  // namespace vantora::com
