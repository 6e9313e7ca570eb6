// Tests on a file "a" that is replaced or overwritten in a folder of its own.
#pragma once

#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "document/overwrite.h"
#include "document/replace.h"
#include "tests/support/fatal.h"
#include "tests/support/program.h"

namespace tolvane::test {

class OutputFile : public ProgramTest {
 protected:
  [[nodiscard]] std::string path() const { return folder / "a"; }

  /// Replaces the file "a"; the message if that is fatal.
  [[nodiscard]] std::string replaced(std::string_view text) const {
    return fatal([&] {
      const std::string name = path();
      Lock lock{name.c_str()};
      Original original = Original::replaced(lock, name.c_str());
      replace(original, text);
    });
  }

  /// Writes straight over the file "a"; the message if that is fatal.
  [[nodiscard]] std::string overwritten(std::string_view text) const { return overwritten(path(), text); }
  [[nodiscard]] static std::string overwritten(const std::string& path, std::string_view text) {
    return fatal([&] {
      Lock lock{path.c_str()};
      overwrite(Original::opened(lock, path.c_str()), text);
    });
  }

  static constexpr unsigned nobody = 65534;

  /// Replaces the file "a" in a process of an ordinary user.
  void replaceasnobody() const {
    std::filesystem::permissions(folder, std::filesystem::perms{0777});
    const pid_t child = fork();
    if (child == 0) {
      const bool other = setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
      _exit(other && replaced("new\n").empty() ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(contents(folder / "a"), "new\n");
  }

  [[nodiscard]] struct stat statusof(const char* name) const {
    struct stat status = {};
    EXPECT_EQ(stat((folder / name).c_str(), &status), 0) << name;
    return status;
  }

  [[nodiscard]] unsigned mode(const char* name) const { return statusof(name).st_mode & 07777U; }
};

/// Lets no file of this process grow beyond that size, as long as it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{size, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    (void)std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

}  // namespace tolvane::test
