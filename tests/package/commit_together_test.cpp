// Several files that take their places all or not at all.
#include "package/commit_together.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

namespace fs = std::filesystem;

class CommittedTogether : public ::testing::Test {
 protected:
  void Put(const fs::path& path, const std::string& text) { std::ofstream(path) << text; }
  // Begins the replacement of a file of the folder by the text.
  void Replace(const std::string& name, const std::string& text) {
    files.push_back(std::make_unique<ReplacementFile>(folder / name));
    Put(files.back()->path(), text);
  }
  // "a=1 b=2 " for the files of the folder, "c/ " for a folder in it.
  std::string Content() {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(folder / "")) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::string content;
    for (const fs::path& path : paths) {
      content += path.filename().string();
      if (fs::is_directory(path)) {
        content += "/ ";
        continue;
      }
      std::ifstream in(path);
      content += "=" + std::string(std::istreambuf_iterator<char>(in), {}) + " ";
    }
    return content;
  }

  testing::TemporaryFolder folder;
  std::vector<std::unique_ptr<ReplacementFile>> files;
};

TEST_F(CommittedTogether, AllGetTheirNames) {
  Put(folder / "a", "old");
  Replace("a", "new a");
  Replace("b", "new b");
  CommitTogether(files);
  EXPECT_EQ(Content(), "a=new a b=new b ");
}

TEST_F(CommittedTogether, OneThatCannotHaveItsNamePutsTheOthersBack) {
  Put(folder / "a", "old");
  Replace("a", "new a");
  Replace("b", "new b");
  Replace("c", "new c");
  Replace("d", "new d");
  // It comes after everything was checked.
  fs::create_directory(folder / "c");
  EXPECT_THROW(CommitTogether(files), FileError);
  files.clear();
  EXPECT_EQ(Content(), "a=old c/ ");
}

}  // namespace
}  // namespace vantora::embedded
