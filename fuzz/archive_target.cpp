// A sound archive with bytes changed: each three bytes of the input are a place and what comes
// there.
#include <fstream>

#include "fuzz_support.h"
#include "package/workbook_file.h"

using namespace vantora;
using namespace vantora::embedded;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile file("fuzz-archive");
  static const std::string sound = [] {
    auto book = WorkbookFile::Create({"Data", "More"});
    book->model().sheets[0]->cells.SetConstant({1, 1}, CellValue::Number(1));
    book->package().Write("xl/media/noise.bin", "0123456789abcdef");
    book->Save(file.path());
    std::ifstream stream(file.path(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }();
  std::string bytes = sound;
  for (std::size_t i = 0; i + 2 < size; i += 3) {
    // Places count from the end, where the directory is.
    const std::size_t place = (data[i] | data[i + 1] << 8) % bytes.size();
    bytes[bytes.size() - 1 - place] = static_cast<char>(data[i + 2]);
  }
  std::ofstream(file.path(), std::ios::binary) << bytes;
  try {
    auto package = OpcPackage::Open(file.path());
    for (const std::string& part : package->PartNames()) package->Read(part);
    WorkbookFile::Open(file.path());
  } catch (const FileError&) {
  }
  return 0;
}
