// Running the program under valgrind, which finds what it does wrong with memory.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tolvane::test {

/// A run under valgrind, with a file for its report that is removed afterwards.
class Valgrind {
 public:
  explicit Valgrind(std::filesystem::path report);
  Valgrind(const Valgrind&) = delete;
  Valgrind& operator=(const Valgrind&) = delete;
  ~Valgrind();

  /// What to put before the program's command line.
  [[nodiscard]] std::vector<std::string> command() const;

  /// After the run: the report, if it tells of an error or a leak or of no run at all. What the program's globals still
  /// lead to at its end is no leak.
  [[nodiscard]] std::string findings() const;

 private:
  std::filesystem::path report_;
};

}  // namespace tolvane::test
