// The steps "4.0" to "4.2".
#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "ladder/check_magtape.h"
#include "ladder/check_zpg.h"
#include "ladder/platformrecord.h"
#include "ladder/sqldatatypes.h"
#include "ladder/steps.h"
#include "standard/databases.h"

namespace tolvane {

namespace {

Text uppercase(std::string_view text) {
  Text upper;
  alphaupper(text, upper);
  return upper;
}

/// Drops the directory and the log file that the server now finds by itself. Kept: a log that is only the directory
/// leaves an empty field.
void dropdefaultpaths() {
  if (uppercase(getvalue("[config]", "wijdir")) == "VELMSYS:") editentry("[config]", "wijdir", "");
  const Text console = getvalue("[config]", "console");
  const Text log = uppercase(getfield(console, 2, ','));
  if (log == "VELMSYS:MESSAGES.LOG" || log == "VELMSYS:") {
    editentry("[config]", "console", replacefield(console, 2, ',', ""));
  }
}

/// From a number of 2 KB global buffers to megabytes, where 0 becomes 1.
void sizeglobals() {
  Text value;
  if (!getvalue("[config]", "globals", value)) {
    saveentry("[config]", "globals", "0,0,8,0,0,0");
    return;
  }
  const int megabytes = int32(2 * std::int64_t{number(value)} + 1023) / 1024;
  editentry("[config]", "globals", Text(megabytes == 0 ? 1 : megabytes, ",0,0,0,0,0"));
}

/// The second field that "ttysiz" has on Windows: the number behind the first comma, or 2.
Text secondsize(const Text& size) {
  const int comma = within(",", size);
  return Text(',', comma == 0 ? 2 : number(Text(size.view().substr(static_cast<std::size_t>(comma)))));
}

/// 75 for each process, unless it is between 50 and 100 already.
void sizeterminals(bool windows) {
  Text value;
  const std::int64_t processes = getvalue("[config]", "processes", value) ? number(value) : 50;
  const bool present = getvalue("[config]", "ttysiz", value);
  const int size = number(value);
  if (present && int32(processes * 50) <= size && size <= int32(processes * 100)) return;
  putentry("[config]", "ttysiz", Text(int32(processes * 75), windows ? secondsize(value) : Text()));
}

void movebuffers(bool vms) {
  Text size;
  const bool present = takeentry("[config]", "rbufsiz", size);
  if (vms) saveentry("[config]", "rbuflock", Text(present ? number(size) : 16));
}

/// Makes the lock table, "locksiz", three times as large, and adds its new size in kilobytes to "gmheap".
void growlocktable() {
  const int locks = int32(3 * std::int64_t{numberin("[config]", "locksiz")});
  const int kilobytes = int32(std::int64_t{locks} + 1023) / 1024;
  const int heap = int32(std::int64_t{kilobytes} + numberin("[config]", "gmheap"));
  editentry("[config]", "locksiz", Text(locks));
  editentry("[config]", "gmheap", Text(heap));
}

/// From a word to "1" or "0".
void convertmultiuser() {
  const char first = getvalue("[Startup]", "EnableMultiUserClients").first();
  editentry("[Startup]", "EnableMultiUserClients", first == 'Y' || first == 'y' ? "1" : "0");
}

}  // namespace

void step40() {
  saveentry("[SQL]", "referentialChecks", "0");
  saveentry("[SQL]", "ddlNo311", "0");
  saveentry("[SqlSysDatatypes]", "LONG BINARY", "BStream%String");
  keepentry("[Language]", "ZaMode", takeentry("[Language]", "ZaModeKRM", "0"));
  delentry("[Language]", "ZaModeDSM");
  if (platformfamily() == "VMS") dropdefaultpaths();
}

void step41() {
  const Text platform = platformrecord();
  const bool windows = within("Windows", platform) != 0;
  const bool vms = within("VMS", platform) != 0;
  sizeglobals();
  delentry("[config]", "reserveper");
  sizeterminals(windows);
  movebuffers(vms);
  check_samples(false);
  check_zpg(false);
  growlocktable();
}

void step42() {
  delentry("[Miscellaneous]", "ReliableJob");
  each(editentry, "[SqlSysDatatypes]", libraryclasses);
  check_docbook(false);
  check_velmlib(false);
  check_zpg(false);
  convertmultiuser();
  if (platformname() == "Tru64 UNIX") check_magtape(0);
  // Kept: "ttysiz", which step "4.1" has just computed for an older file, goes too.
  delentry("[config]", "processes");
  delentry("[config]", "ttysiz");
  moveentry("[Miscellaneous]", "RelCommit", "[Miscellaneous]", "SynchCommit");
}

}  // namespace tolvane
