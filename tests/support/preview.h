// Tests on the real preview: run in a folder of its own, for what it prints and complains about, and its exit status.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace tolvane::test {

/// What a run came to: an outcome, and what stands on standard error.
struct Shown {
  int status;
  std::string printed;
  std::string complained;
  bool operator==(const Shown&) const = default;
};

void PrintTo(const Shown& shown, std::ostream* out);

class PreviewTest : public ProgramTest {
 protected:
  ~PreviewTest() override;

  /// Runs the preview in the test's folder with the words behind its name.
  [[nodiscard]] Shown preview(const std::vector<std::string>& words) const;

  /// The same, by a line of the shell in which "$@" is the preview and its words.
  [[nodiscard]] Shown previewby(const std::string& shell, const std::vector<std::string>& words) const;

  /// What patch(1) makes of a file of the folder with a diff.
  [[nodiscard]] std::string patched(const std::string& name, const std::string& diff) const;
};

}  // namespace tolvane::test
