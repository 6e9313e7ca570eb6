#include "tests/support/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <ostream>
#include <sstream>
#include <system_error>

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// Runs the program with standard output in the given file.
int statusof(const std::vector<std::string>& words, const fs::path& folder, const fs::path& printed) {
  std::string program = TOLVANE_PROGRAM;
  std::vector<std::string> copies = words;
  std::vector<char*> arguments{program.data()};
  for (std::string& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, printed.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  pid_t process = 0;
  const int error = posix_spawn(&process, TOLVANE_PROGRAM, &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), TOLVANE_PROGRAM);

  int status = 0;
  if (waitpid(process, &status, 0) != process) throw std::system_error(errno, std::generic_category());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

fs::path temporaryfolder() {
  std::string name = (fs::temp_directory_path() / "tolvane-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
  return name;
}

}  // namespace

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << "status " << outcome.status << ", printed " << testing::PrintToString(outcome.printed);
}

Files filesin(const fs::path& folder) {
  Files files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    files[entry.path().filename()] = entry.is_regular_file() ? contents(entry.path()) : "(not a file)";
  }
  return files;
}

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::system_error(errno, std::generic_category(), path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void write(const fs::path& path, std::string_view contents) {
  std::ofstream file(path, std::ios::binary);
  file << contents << std::flush;
  if (!file) throw std::system_error(errno, std::generic_category(), path);
}

ProgramTest::ProgramTest() : folder(temporaryfolder()) {}

ProgramTest::~ProgramTest() {
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

Outcome ProgramTest::run(const std::vector<std::string>& words) const {
  const fs::path printed = folder.string() + ".printed";
  Outcome outcome;
  outcome.status = statusof(words, folder, printed);
  outcome.printed = contents(printed);
  fs::remove(printed);
  return outcome;
}

}  // namespace tolvane::test
