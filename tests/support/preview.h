// Tests on the real preview: run in a folder of its own, for what it prints and complains about, and its exit status.
#pragma once

#include <string>
#include <vector>

#include "tests/support/program.h"

namespace tolvane::test {

class PreviewTest : public ProgramTest {
 protected:
  ~PreviewTest() override;

  /// Runs the preview in the test's folder with the words behind its name.
  [[nodiscard]] Outcome preview(const std::vector<std::string>& words) const;

  /// The same, by a line of the shell in which "$@" is the preview and its words.
  [[nodiscard]] Outcome previewby(const std::string& shell, const std::vector<std::string>& words) const;

  /// What patch(1) makes of a file of the folder with a diff.
  [[nodiscard]] std::string patched(const std::string& name, const std::string& diff) const;
};

}  // namespace tolvane::test
