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

  /// Lines of JSON are that many objects, which keep to the schema and to their accounts.
  void expectvalid(const std::string& json, std::size_t objects) const;
};

/// Tests of what the preview says of a file.
class PreviewProgram : public PreviewTest {
 protected:
  /// What the report says below its heading "Result" of a file "a.qpx" of that text.
  [[nodiscard]] std::string result(const std::string& text, int status) const;

  static inline const std::string platform = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";

  /// A file that only the last step changes, and one that nothing changes.
  static inline const std::string old =
      "[ConfigFile]\nVersion=5.44\n\n\n" + platform + "5.44\nrbufsiz=1\n[Language]\nPhysicalCursor=1\n";
  static inline const std::string current = "[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n";

  /// A system file for merge.
  static inline const std::string systemfile =
      "[ConfigFile]\nFileType=Configuration 3.11\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~3.11\nttysiz=9\n";
};

}  // namespace tolvane::test
