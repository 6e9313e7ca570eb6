// Tests on the real program: run in a folder of its own, for what it prints, its exit status and the files it leaves.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tolvane::test {

/// True in a build with the sanitizers, which bear no tracer, no other malloc and no limit on memory.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

/// What a run came to: the exit status, or minus the signal that ended it, and what stands on standard output and on
/// standard error.
struct Outcome {
  int status;
  std::string printed;
  std::string complained = {};
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out);

/// The files of a folder by name, with what they hold; "(not a file)" for anything else.
using Files = std::map<std::string, std::string>;

Files filesin(const std::filesystem::path& folder);

/// Files by name and contents, which take turns.
template <typename... Rest>
Files filesof(const std::string& name, const std::string& text, const Rest&... rest) {
  Files files;
  if constexpr (sizeof...(rest) > 0) files = filesof(rest...);
  files[name] = text;
  return files;
}

std::string contents(const std::filesystem::path& path);
void write(const std::filesystem::path& path, std::string_view contents);

/// A fresh folder for a test, removed after it.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();
  ~ProgramTest() override;

  /// Runs the program in the test's folder with the words behind its name.
  [[nodiscard]] Outcome run(const std::vector<std::string>& words) const;

  /// The same within a limit of the shell's `ulimit`, such as "-v 30000".
  [[nodiscard]] Outcome runwithin(const std::string& limit, const std::vector<std::string>& words) const;

  /// The same, run by another command line that ends with the program's.
  [[nodiscard]] Outcome runby(std::vector<std::string> commandline, const std::vector<std::string>& words) const;

  /// The same, as an ordinary user (65534) without any group but that of the number. Only root becomes somebody else:
  /// without being root, as who one is.
  [[nodiscard]] Outcome runasother(std::vector<std::string> commandline, const std::vector<std::string>& words) const;

  /// Runs a whole command line in the test's folder.
  [[nodiscard]] Outcome spawn(std::vector<std::string> commandline) const;

  std::filesystem::path folder;
};

}  // namespace tolvane::test
