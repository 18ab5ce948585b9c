// vantora-bench-floor FILE: the least work that opening and saving a workbook can take, one part
// after the other in one thread: inflate each part, parse the XML parts, deflate all again.
#include <sys/resource.h>
#include <zip.h>
#include <zlib.h>
#include <pugixml.hpp>

#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Times {
  double inflate = 0;
  double parse = 0;
  double deflate = 0;
  std::size_t bytes = 0;
};

// Runs the work and adds the seconds it took.
template <typename Work>
auto Timed(double& seconds, Work&& work) {
  auto start = Clock::now();
  auto result = work();
  seconds += std::chrono::duration<double>(Clock::now() - start).count();
  return result;
}

std::string Inflate(zip_t* archive, zip_uint64_t index, zip_uint64_t size) {
  std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(zip_fopen_index(archive, index, 0),
                                                         zip_fclose);
  std::string bytes(size, '\0');
  if (!file || zip_fread(file.get(), bytes.data(), size) != static_cast<zip_int64_t>(size)) {
    throw std::runtime_error("a part can't be read");
  }
  return bytes;
}

bool IsXml(std::string_view name) {
  return name.ends_with(".xml") || name.ends_with(".rels") || name.ends_with(".vml");
}

std::size_t Parse(const std::string& bytes) {
  pugi::xml_document document;
  if (!document.load_buffer(bytes.data(), bytes.size(), pugi::parse_full)) {
    throw std::runtime_error("a part is not well-formed");
  }
  return document.child("worksheet").child("sheetData").empty() ? 0 : 1;
}

std::size_t Deflate(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::vector<Bytef> out(size);
  if (compress2(out.data(), &size, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), 6) !=
      Z_OK) {
    throw std::runtime_error("a part can't be compressed");
  }
  return size;
}

Times Measure(const char* path) {
  int error = 0;
  std::unique_ptr<zip_t, void (*)(zip_t*)> archive(zip_open(path, ZIP_RDONLY, &error), zip_discard);
  if (!archive) throw std::runtime_error(std::string("can't open ") + path);
  Times times;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive.get(), 0); ++i) {
    auto index = static_cast<zip_uint64_t>(i);
    zip_stat_t stat;
    if (zip_stat_index(archive.get(), index, 0, &stat) != 0) {
      throw std::runtime_error("the archive's directory is damaged");
    }
    std::string bytes =
        Timed(times.inflate, [&] { return Inflate(archive.get(), index, stat.size); });
    if (IsXml(stat.name)) Timed(times.parse, [&] { return Parse(bytes); });
    Timed(times.deflate, [&] { return Deflate(bytes); });
    times.bytes += bytes.size();
  }
  return times;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: vantora-bench-floor FILE\n");
    return 2;
  }
  try {
    Times times = Measure(argv[1]);
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("inflate %.3f s\nparse %.3f s\ndeflate %.3f s\nsum %.3f s\n", times.inflate,
                times.parse, times.deflate, times.inflate + times.parse + times.deflate);
    std::printf("bytes %zu\npeak %.1f MB\n", times.bytes,
                static_cast<double>(usage.ru_maxrss) / 1024);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vantora-bench-floor: %s: %s\n", argv[1], error.what());
    return 1;
  }
}
