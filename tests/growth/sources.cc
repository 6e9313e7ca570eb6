#include "tests/growth/sources.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace tolvane::test {

namespace {

std::size_t indentation(const std::string& line) { return std::min(line.find_first_not_of(' '), line.size()); }

bool comment(const std::string& line) { return line.compare(indentation(line), 2, "//") == 0; }

bool loops(const std::string& line) {
  static const std::regex form(
      R"(^ .*\b((for|while) \(|std::(ranges::)?(all_of|any_of|none_of|for_each|find|find_if|count|count_if|copy|copy_if|)"
      R"(equal|mismatch|search|sort|stable_sort|transform|accumulate|remove_if|erase_if|unique|reverse)\())");
  return !comment(line) && std::regex_search(line, form);
}

/// What a command line prints.
std::string printedby(const std::string& commandline) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(commandline.c_str(), "r"), pclose);
  if (pipe == nullptr) throw std::runtime_error(commandline);
  std::string text;
  for (int character = std::getc(pipe.get()); character != EOF; character = std::getc(pipe.get())) {
    text += static_cast<char>(character);
  }
  return text;
}

}  // namespace

std::vector<std::string> linesof(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<Loop> loopsof(const std::string& source) {
  const std::vector<std::string> lines = linesof(source);
  std::vector<Loop> result;
  for (std::size_t first = 0; first < lines.size(); ++first) {
    if (!loops(lines[first])) continue;
    const std::size_t margin = indentation(lines[first]);
    std::size_t end = first + 1;
    while (end < lines.size() && (lines[end].empty() || indentation(lines[end]) > margin)) ++end;
    result.push_back({lines[first].substr(margin), static_cast<int>(first) + 1, static_cast<int>(end)});
  }
  return result;
}

std::map<std::uintptr_t, std::vector<SourceLine>> linesofblocks(const BlockCounts& blocks) {
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  const std::filesystem::path addresses = testing::TempDir() + "tolvane-blocks-" + std::to_string(getpid());
  std::ofstream list(addresses);
  for (const auto& [block, count] : blocks) list << std::hex << block << '\n';
  list.close();
  const std::string printed = printedby("addr2line -aie '" + program.string() + "' < '" + addresses.string() + "'");
  std::filesystem::remove(addresses);

  static const std::regex form(R"(.*/(src/[^:]+):(\d+).*)");
  std::map<std::uintptr_t, std::vector<SourceLine>> result;
  std::uintptr_t block = 0;
  std::smatch match;
  for (const std::string& line : linesof(printed)) {
    if (line.starts_with("0x")) {
      block = std::stoul(line, nullptr, 16);
      result[block] = {};
    } else if (std::regex_match(line, match, form)) {
      result[block].emplace_back(match[1], std::stoi(match[2]));
    }
  }
  return result;
}

}  // namespace tolvane::test
