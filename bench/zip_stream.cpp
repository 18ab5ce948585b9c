#include "zip_stream.h"

#include <zlib.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace vantora::bench {
namespace {

void Append(std::string& bytes, std::uint64_t number, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<char>(number >> (8 * i) & 0xff));
}

}  // namespace

struct ZipStream::Deflater {
  z_stream stream{};

  Deflater() {
    if (deflateInit2(&stream, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
      throw std::runtime_error("zlib can't be set up");
    }
  }
  ~Deflater() { deflateEnd(&stream); }
};

ZipStream::ZipStream(const std::filesystem::path& path) : file_(path, std::ios::binary) {
  if (!file_) throw std::runtime_error("can't write " + path.string());
}

ZipStream::~ZipStream() = default;

void ZipStream::WriteLocalHeader(const Part& part) {
  std::string header;
  Append(header, 0x04034b50, 4);
  Append(header, 20, 2);
  Append(header, 0, 2);
  Append(header, 8, 2);
  Append(header, 0x21 << 16, 4);  // 1 January 1980
  Append(header, part.crc, 4);
  Append(header, part.compressed_size, 4);
  Append(header, part.size, 4);
  Append(header, part.name.size(), 2);
  Append(header, 0, 2);
  file_ << header << part.name;
}

void ZipStream::Begin(std::string name) {
  EndPart();
  Part part;
  part.name = std::move(name);
  part.offset = static_cast<std::uint64_t>(file_.tellp());
  WriteLocalHeader(part);
  parts_.push_back(std::move(part));
  deflater_ = std::make_unique<Deflater>();
}

void ZipStream::Write(std::string_view bytes) {
  Part& part = parts_.back();
  auto data = reinterpret_cast<const Bytef*>(bytes.data());
  part.crc = static_cast<std::uint32_t>(crc32_z(part.crc, data, bytes.size()));
  part.size += bytes.size();
  Compress(bytes, false);
}

void ZipStream::Compress(std::string_view bytes, bool ends) {
  std::array<char, 1 << 16> out;
  z_stream& stream = deflater_->stream;
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  do {
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, ends ? Z_FINISH : Z_NO_FLUSH);
    std::size_t count = out.size() - stream.avail_out;
    parts_.back().compressed_size += count;
    file_.write(out.data(), static_cast<std::streamsize>(count));
  } while (stream.avail_out == 0);
}

void ZipStream::EndPart() {
  if (!deflater_) return;
  Compress({}, true);
  deflater_.reset();
  // The header is written again, now that sizes and checksum are known.
  auto end = file_.tellp();
  file_.seekp(static_cast<std::streamoff>(parts_.back().offset));
  WriteLocalHeader(parts_.back());
  file_.seekp(end);
}

void ZipStream::Close() {
  EndPart();
  std::string directory;
  for (const Part& part : parts_) {
    Append(directory, 0x02014b50, 4);
    Append(directory, 20, 2);
    Append(directory, 20, 2);
    Append(directory, 0, 2);
    Append(directory, 8, 2);
    Append(directory, 0x21 << 16, 4);
    Append(directory, part.crc, 4);
    Append(directory, part.compressed_size, 4);
    Append(directory, part.size, 4);
    Append(directory, part.name.size(), 2);
    Append(directory, 0, 12);
    Append(directory, part.offset, 4);
    directory += part.name;
  }
  auto start = static_cast<std::uint64_t>(file_.tellp());
  file_ << directory;
  std::string end;
  Append(end, 0x06054b50, 4);
  Append(end, 0, 4);
  Append(end, parts_.size(), 2);
  Append(end, parts_.size(), 2);
  Append(end, directory.size(), 4);
  Append(end, start, 4);
  Append(end, 0, 2);
  file_ << end;
  file_.close();
  if (!file_) throw std::runtime_error("the archive could not be written");
}

}  // namespace vantora::bench
