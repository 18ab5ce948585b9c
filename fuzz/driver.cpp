// Stands in for libFuzzer where the compiler has none: runs a target on its seeds and on mutations
// of them, the same ones each time. A failing target is a crash, or an abort; the input that did it
// is then in "crash-input".
//
//   fuzz_TARGET [-runs=N] [-dict=FILE] [SEED-FOLDER-OR-FILE]...
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongest = 1 << 14;

std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

// The quoted words of a dictionary, with its \xHH, \\ and \" escapes.
std::vector<std::string> WordsOf(const fs::path& path) {
  std::vector<std::string> words;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t open = line.find('"');
    if (line.starts_with('#') || open == std::string::npos) continue;
    std::string word;
    for (std::size_t i = open + 1; i < line.size() && line[i] != '"'; ++i) {
      if (line[i] != '\\') {
        word += line[i];
      } else if (line[++i] == 'x') {
        word += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
        i += 2;
      } else {
        word += line[i];
      }
    }
    words.push_back(word);
  }
  return words;
}

class Mutator {
 public:
  Mutator(std::vector<std::string> seeds, std::vector<std::string> words)
      : seeds_(std::move(seeds)), words_(std::move(words)) {}

  std::string Next() {
    std::string input = seeds_[Below(seeds_.size())];
    for (std::size_t rounds = 1 + Below(6); rounds > 0; --rounds) Mutate(input);
    input.resize(std::min(input.size(), kLongest));
    return input;
  }

 private:
  std::size_t Below(std::size_t limit) { return random_() % limit; }

  void Mutate(std::string& input) {
    const std::size_t at = Below(input.size() + 1);
    const std::size_t length = std::min(Below(32), input.size() - at);
    switch (Below(7)) {
      case 0:
        if (at < input.size()) input[at] = static_cast<char>(Below(256));
        break;
      case 1:
        input.erase(at, length);
        break;
      case 2:
        input.insert(at, input.substr(at, length));
        break;
      case 3:
        input.insert(at, input.substr(Below(input.size() + 1), 1 + Below(200)));
        break;
      case 4: {
        const std::string& other = seeds_[Below(seeds_.size())];
        input = input.substr(0, at) + other.substr(Below(other.size() + 1));
        break;
      }
      default:
        if (words_.empty()) break;
        input.replace(at, Below(2) ? length : 0, words_[Below(words_.size())]);
    }
  }

  std::vector<std::string> seeds_;
  std::vector<std::string> words_;
  std::mt19937 random_{1};
};

void Run(const std::string& input) {
  std::ofstream("crash-input", std::ios::binary) << input;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argument_count, char** arguments) {
  long runs = 1000;
  std::vector<std::string> seeds;
  std::vector<std::string> words;
  for (int i = 1; i < argument_count; ++i) {
    const std::string argument = arguments[i];
    if (argument.starts_with("-runs=")) {
      runs = std::stol(argument.substr(6));
    } else if (argument.starts_with("-dict=")) {
      words = WordsOf(argument.substr(6));
    } else if (fs::is_directory(argument)) {
      std::vector<fs::path> files;
      for (const auto& entry : fs::directory_iterator(argument)) files.push_back(entry.path());
      std::sort(files.begin(), files.end());
      for (const fs::path& file : files) seeds.push_back(BytesOf(file));
    } else {
      seeds.push_back(BytesOf(argument));
    }
  }
  if (seeds.empty()) {
    std::cerr << "There are no seeds.\n";
    return 1;
  }
  // A folder of its own, as several targets may run at once.
  const fs::path folder = fs::path("fuzz-" + fs::path(arguments[0]).filename().string());
  fs::create_directories(folder);
  fs::current_path(folder);
  for (const std::string& seed : seeds) Run(seed);
  Mutator mutator(seeds, words);
  for (long run = 0; run < runs; ++run) Run(mutator.Next());
  fs::remove("crash-input");
  std::cout << runs << " mutations of " << seeds.size() << " seeds\n";
}
