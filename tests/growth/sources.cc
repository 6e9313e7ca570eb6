#include "tests/growth/sources.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace tolvane::test {

namespace {

std::size_t indentation(const std::string& line) { return std::min(line.find_first_not_of(' '), line.size()); }

bool comment(const std::string& line) { return line.compare(indentation(line), 2, "//") == 0; }

constexpr const char* loopwords[] = {
    "for (",         "while (",           "std::accumulate(", "std::all_of(",    "std::any_of(",   "std::copy(",
    "std::copy_if(", "std::count(",       "std::count_if(",   "std::equal(",     "std::erase_if(", "std::find(",
    "std::find_if(", "std::for_each(",    "std::none_of(",    "std::remove_if(", "std::reverse(",  "std::search(",
    "std::sort(",    "std::stable_sort(", "std::transform(",  "std::unique(",    "std::ranges::",
};

/// Whether the line has the word, and that not as the end of another one.
bool has(const std::string& line, const std::string& word) {
  const std::size_t place = line.find(word);
  return place != std::string::npos && place > 0 && std::isalnum(static_cast<unsigned char>(line[place - 1])) == 0;
}

/// Whether a loop begins in the line. What is not indented declares or defines a procedure.
bool loops(const std::string& line) {
  return line.starts_with(' ') && !comment(line) &&
         std::any_of(std::begin(loopwords), std::end(loopwords), [&](const char* word) { return has(line, word); });
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

  std::map<std::uintptr_t, std::vector<SourceLine>> result;
  std::uintptr_t block = 0;
  for (const std::string& line : linesof(printed)) {
    if (line.starts_with("0x")) {
      block = std::stoul(line, nullptr, 16);
      result[block] = {};
    } else if (const std::size_t source = line.rfind("/src/"), colon = line.rfind(':'); source < colon) {
      result[block].emplace_back(line.substr(source + 1, colon - source - 1), std::atoi(&line[colon + 1]));
    }
  }
  return result;
}

}  // namespace tolvane::test
