#include "tests/support/golden.h"

#include <algorithm>
#include <sstream>

#include "tests/support/program.h"

namespace tolvane::test {

namespace fs = std::filesystem;

const fs::path golden = fs::path(TOLVANE_SOURCE) / "tests" / "golden";

std::vector<fs::path> subfolders(const fs::path& folder) {
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) found.push_back(entry.path());
  std::sort(found.begin(), found.end());
  return found;
}

std::vector<fs::path> goldencases() {
  std::vector<fs::path> found;
  // Not `golden`: the cases are listed before main begins.
  for (const fs::path& version : subfolders(fs::path(TOLVANE_SOURCE) / "tests" / "golden")) {
    for (const fs::path& folder : subfolders(version)) found.push_back(folder);
  }
  return found;
}

std::vector<std::string> goldenwords(const fs::path& folder) {
  std::istringstream command(contents(folder / "command"));
  std::vector<std::string> found;
  for (std::string word; std::getline(command, word);) found.push_back(word);
  return found;
}

}  // namespace tolvane::test
