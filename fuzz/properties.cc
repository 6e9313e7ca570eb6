#include "fuzz/properties.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <sstream>
#include <stdexcept>

#include "commands/forget.h"
#include "document/linestore.h"
#include "fuzz/work.h"

namespace tolvane::fuzz {

namespace {

namespace fs = std::filesystem;

/// A folder of this process, in memory where there is such a place.
class Folder {
 public:
  Folder() : path_((fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()) / name()) {
    fs::create_directories(path_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { fs::remove_all(path_); }

  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  static std::string name() { return "tolvane-fuzz-" + std::to_string(getpid()); }
  fs::path path_;
};

bool blank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

}  // namespace

void claim(bool holds, const std::string& claim) {
  if (!holds) throw std::logic_error(claim);
}

std::string pathof(const std::string& name) {
  static const Folder folder;
  return folder.path() / name;
}

void writefile(const std::string& name, std::string_view contents) {
  std::ofstream file(pathof(name), std::ios::binary);
  file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  claim(file.good(), "the fuzzer can write its files");
}

std::string readfile(const std::string& name) {
  std::ifstream file(pathof(name), std::ios::binary);
  std::ostringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

bool exists(const std::string& name) { return fs::exists(pathof(name)); }

Lines linesof(std::string_view contents) {
  Lines lines;
  while (!contents.empty()) {
    const std::size_t end = std::min({contents.find('\n'), contents.size(), std::size_t{511}});
    std::string line{contents.substr(0, end)};
    line.resize(std::min(line.find('\0'), line.size()));
    if (!blank(line)) lines.push_back(line);
    contents.remove_prefix(end);
    if (end < 511 && !contents.empty()) contents.remove_prefix(1);
  }
  return lines;
}

Lines storedlines() {
  Lines lines;
  const Line* previous = nullptr;
  for (const Line* line = start; line != nullptr; line = line->next) {
    claim(line->previous == previous, "each line knows the one before it");
    claim(line->text.length() <= Text::maximum, "no line is longer than 511 characters");
    lines.emplace_back(line->text.view());
    previous = line;
  }
  claim(last == previous, "the last line is the last one");
  return lines;
}

std::string contentsof(const Lines& lines) {
  std::string contents;
  for (const std::string& line : lines) {
    if (line.starts_with('[') && &line != lines.data()) contents += '\n';
    contents += line + '\n';
  }
  return contents;
}

bool ends(const std::function<void()>& work, std::uint64_t allowed) {
  forget();
  const std::uint64_t before = workdone();
  bool whole = false;
  try {
    work();
    whole = true;
  } catch (const Fatal&) {
  } catch (const TextTooLong&) {
  }
  const std::uint64_t done = workdone() - before;
  claim(done <= allowed, std::to_string(done) + " blocks are too many");
  return whole;
}

void claimkept(const Lines& before, const Lines& after, bool (*kept)(const std::string& line)) {
  Lines expected;
  Lines found;
  std::copy_if(before.begin(), before.end(), std::back_inserter(expected), kept);
  std::copy_if(after.begin(), after.end(), std::back_inserter(found), kept);
  claim(expected == found, "lines that no step knows come out as they went in");
}

}  // namespace tolvane::fuzz
