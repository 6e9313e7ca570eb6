#include "tests/support/valgrind.h"

#include <utility>

#include "tests/support/program.h"

namespace tolvane::test {

Valgrind::Valgrind(std::filesystem::path report) : report_(std::move(report)) {}

Valgrind::~Valgrind() { std::filesystem::remove(report_); }

std::vector<std::string> Valgrind::command() const {
  // A library that was loaded ahead of the C library keeps its own malloc.
  return {"/usr/bin/valgrind",
          "--leak-check=full",
          "--show-leak-kinds=definite,indirect,possible",
          "--errors-for-leak-kinds=definite,indirect,possible",
          "--soname-synonyms=somalloc=nouserintercepts",
          "--suppressions=" TOLVANE_SOURCE "/tests/support/valgrind.supp",
          "--log-file=" + report_.string()};
}

std::string Valgrind::findings() const {
  std::string report = contents(report_);
  const bool looked = report.find("HEAP SUMMARY") != std::string::npos;
  if (looked && report.find("ERROR SUMMARY: 0 errors ") != std::string::npos) return "";
  return report.empty() ? "no report" : report;
}

}  // namespace tolvane::test
