#include "tests/growth/conversions.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "commands/commands.h"
#include "document/entries.h"
#include "document/parse.h"
#include "ladder/check_magtape.h"
#include "ladder/check_zpg.h"
#include "ladder/convertconfig.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"
#include "legacy/merge.h"
#include "standard/databases.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// A directory for the files of one command.
class Folder {
 public:
  Folder() {
    if (mkdtemp(name_.data()) == nullptr) throw std::runtime_error(name_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { fs::remove_all(name_); }

  /// Writes a file there and returns its path.
  [[nodiscard]] std::string with(const std::string& file, const std::string& text) const {
    write(fs::path(name_) / file, text);
    return fs::path(name_) / file;
  }

 private:
  std::string name_ = (fs::temp_directory_path() / "tolvane-test-XXXXXX").string();
};

}  // namespace

void climbladder(const std::string& file) {
  parse(file);
  convertconfig("3.11");
  (void)tolvane::contents();
}

void climbnetwork(const std::string& file) {
  parse(file);
  convertnetwork("2.03");
  (void)tolvane::contents();
}

void climbsystem(const std::string& file) {
  parse(file);
  convertsystem("2.0");
  (void)tolvane::contents();
}

void mergepair(const std::string& file) {
  const Folder folder;
  const std::string system = folder.with("system", "[ConfigFile]\nFileType=Configuration 2.0\n" + file);
  const std::string network = folder.with("network", "[ConfigFile]\nFileType=Network 2.03\n" + file);
  merge(folder.with("merged", "").c_str(), system.c_str(), network.c_str());
}

void resetstandards(const std::string& file) {
  parse(file);
  check_magtape(1);
  check_zpg(true);
  check_audit(true);
  check_velmlib(true);
  check_docbook(true);
  check_samples(true);
  (void)tolvane::contents();
}

void setaside(const std::string& file) {
  parse(file);
  insertafter(start, makeentry(last->text()));
  const Text header = start->text();
  Aside lines;
  dlstore(makeentry(header));
  lines.putback();
  (void)tolvane::contents();
  const Aside dropped;
}

void runupdate(const std::string& file) {
  const Folder folder;
  update(folder.with("file", file).c_str());
}

void runfdbms(const std::string& file) {
  const Folder folder;
  fdbms(folder.with("file", file).c_str());
}

void runsetparameter(const std::string& file) {
  const Folder folder;
  const std::string path = folder.with("file", file);
  setparameter(path.c_str(), "[Last]", "key", "value");
  setparameter(path.c_str(), "missing", "key", "value");
  setparameter(path.c_str(), "[Last]", "[Last]", "value");
}

}  // namespace tolvane::test
