#include "tests/support/preview.h"

#include <ostream>

namespace tolvane::test {

namespace fs = std::filesystem;

void PrintTo(const Shown& shown, std::ostream* out) {
  *out << "status " << shown.status << ", printed " << testing::PrintToString(shown.printed) << ", complained "
       << testing::PrintToString(shown.complained);
}

PreviewTest::~PreviewTest() {
  for (const char* ending : {".complained", ".diff", ".patched"}) fs::remove(folder.string() + ending);
}

Shown PreviewTest::preview(const std::vector<std::string>& words) const { return previewby("exec \"$@\"", words); }

Shown PreviewTest::previewby(const std::string& shell, const std::vector<std::string>& words) const {
  const std::string complained = folder.string() + ".complained";
  std::vector<std::string> line{"/bin/sh", "-c", "exec 2>" + complained + "; " + shell, "sh", TOLVANE_PREVIEW};
  line.insert(line.end(), words.begin(), words.end());
  const Outcome outcome = spawn(line);
  return {outcome.status, outcome.printed, contents(complained)};
}

std::string PreviewTest::patched(const std::string& name, const std::string& diff) const {
  const std::string patch = folder.string() + ".diff";
  const std::string result = folder.string() + ".patched";
  write(patch, diff);
  EXPECT_EQ(spawn({"/usr/bin/patch", "-s", "-o", result, (folder / name).string(), patch}), (Outcome{0, ""})) << diff;
  return contents(result);
}

}  // namespace tolvane::test
