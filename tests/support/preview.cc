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

void PreviewTest::expectvalid(const std::string& json, std::size_t objects) const {
  const fs::path source = TOLVANE_SOURCE;
  write(folder / "all.json", json);
  EXPECT_EQ(spawn({"/usr/bin/python3", source / "tests" / "preview" / "validate.py",
                   source / "docs" / "preview.schema.json", folder / "all.json"}),
            (Outcome{0, std::to_string(objects) + " objects\n"}));
}

std::string PreviewProgram::result(const std::string& text, int status) const {
  write(folder / "a.qpx", text);
  const Outcome shown = preview({"a.qpx"});
  EXPECT_EQ(shown.status, status) << shown.printed;
  const std::size_t begin = shown.printed.find("\nResult\n");
  return begin == std::string::npos ? "no result" : shown.printed.substr(begin + 8);
}

}  // namespace tolvane::test
