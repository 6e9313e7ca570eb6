#include "tests/support/preview.h"

namespace tolvane::test {

namespace fs = std::filesystem;

PreviewTest::~PreviewTest() {
  for (const char* ending : {".diff", ".patched"}) fs::remove(folder.string() + ending);
}

Outcome PreviewTest::preview(const std::vector<std::string>& words) const { return previewby("exec \"$@\"", words); }

Outcome PreviewTest::previewby(const std::string& shell, const std::vector<std::string>& words) const {
  std::vector<std::string> line{"/bin/sh", "-c", shell, "sh", TOLVANE_PREVIEW};
  line.insert(line.end(), words.begin(), words.end());
  return spawn(line);
}

std::string PreviewTest::patched(const std::string& name, const std::string& diff) const {
  const std::string patch = folder.string() + ".diff";
  const std::string result = folder.string() + ".patched";
  write(patch, diff);
  EXPECT_EQ(spawn({"/usr/bin/patch", "-s", "-o", result, (folder / name).string(), patch}), (Outcome{0, ""})) << diff;
  return contents(result);
}

}  // namespace tolvane::test
