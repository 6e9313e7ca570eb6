#include "tests/support/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <ostream>
#include <sstream>
#include <system_error>
#include <utility>

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// Runs a command line with standard output and standard error in the given files.
int statusof(std::vector<std::string>& commandline, const fs::path& folder, const fs::path& printed,
             const fs::path& complained) {
  std::vector<char*> arguments;
  for (std::string& word : commandline) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, printed.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, complained.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  // Whatever runs these tests may ignore or block signals, as nohup(1) does.
  posix_spawnattr_t attributes;
  sigset_t all;
  sigset_t none;
  sigfillset(&all);
  sigemptyset(&none);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  pid_t process = 0;
  const int error = posix_spawn(&process, arguments[0], &actions, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), arguments[0]);

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
  *out << "status " << outcome.status << ", printed " << testing::PrintToString(outcome.printed) << ", complained "
       << testing::PrintToString(outcome.complained);
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

Outcome ProgramTest::spawn(std::vector<std::string> commandline) const {
  const fs::path printed = folder.string() + ".printed";
  const fs::path complained = folder.string() + ".complained";
  Outcome outcome;
  outcome.status = statusof(commandline, folder, printed, complained);
  outcome.printed = contents(printed);
  outcome.complained = contents(complained);
  fs::remove(printed);
  fs::remove(complained);
  return outcome;
}

Outcome ProgramTest::runby(std::vector<std::string> commandline, const std::vector<std::string>& words) const {
  commandline.emplace_back(TOLVANE_PROGRAM);
  commandline.insert(commandline.end(), words.begin(), words.end());
  return spawn(std::move(commandline));
}

Outcome ProgramTest::run(const std::vector<std::string>& words) const { return runby({}, words); }

Outcome ProgramTest::runasother(std::vector<std::string> commandline, const std::vector<std::string>& words) const {
  if (geteuid() != 0) return runby(std::move(commandline), words);
  // The program may stand where nobody else gets in.
  const std::string program = folder.string() + ".program";
  fs::copy_file(TOLVANE_PROGRAM, program, fs::copy_options::overwrite_existing);
  commandline.insert(commandline.begin(), {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
  commandline.push_back(program);
  commandline.insert(commandline.end(), words.begin(), words.end());
  const Outcome outcome = spawn(std::move(commandline));
  fs::remove(program);
  return outcome;
}

Outcome ProgramTest::runwithin(const std::string& limit, const std::vector<std::string>& words) const {
  return runby({"/bin/sh", "-c", "ulimit " + limit + "; exec \"$0\" \"$@\""}, words);
}

}  // namespace tolvane::test
