// The program's entry: reads the command line, previews each file, and turns what came of it into output and the exit
// status of diff(1): 0 nothing would change, 1 something would, 2 trouble.
#include <getopt.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "document/versions.h"
#include "preview/escape.h"
#include "preview/json.h"
#include "preview/preview.h"
#include "preview/report.h"
#include "preview/unified.h"

namespace {

using tolvane::Outcome;
using tolvane::Preview;
using tolvane::Request;

constexpr int nochange = 0;
constexpr int somechange = 1;
constexpr int trouble = 2;

constexpr const char* usagetext =
    "Usage: tolvane-preview [--diff|--json|--summary] [--color=auto|always|never] FILE...\n"
    "       tolvane-preview [...] merge SYSTEM NETWORK\n";

constexpr const char* helptext =
    "\n"
    "Shows what `tolvane update FILE`, or a merge of the two files of the legacy layout, would do, step by step.\n"
    "Writes no file.\n"
    "\n"
    "  --diff        a unified diff instead, which patch(1) applies\n"
    "  --json        one JSON object a file instead\n"
    "  --summary     one line a file instead\n"
    "  --color=WHEN  colours: auto (on a terminal, unless NO_COLOR is set; this is the default), always or never\n"
    "  --help        this text\n"
    "  --version     the version\n"
    "\n"
    "Exit status: 0 when nothing would change, 1 when something would, 2 when there was trouble.\n";

enum class Form { report, diff, json, summary };
enum class When { automatic, always, never };

/// The command line.
struct Options {
  Form form = Form::report;
  When color = When::automatic;
  bool help = false;
  bool version = false;
  bool wrong = false;
};

constexpr option longoptions[] = {
    {"diff",    no_argument,       nullptr, 'd'},
    {"json",    no_argument,       nullptr, 'j'},
    {"summary", no_argument,       nullptr, 's'},
    {"color",   required_argument, nullptr, 'c'},
    {"help",    no_argument,       nullptr, 'h'},
    {"version", no_argument,       nullptr, 'v'},
    {nullptr,   0,                 nullptr, 0  },
};

/// Only one form can be asked for, though more than once.
void choose(Options& options, Form form) {
  options.wrong |= options.form != Form::report && options.form != form;
  options.form = form;
}

void choosecolor(Options& options, std::string_view when) {
  options.wrong |= when != "auto" && when != "always" && when != "never";
  options.color = when == "always" ? When::always : when == "never" ? When::never : When::automatic;
}

Options read(int words, char** line) {
  Options options;
  opterr = 0;
  for (int letter = 0; (letter = getopt_long(words, line, "", longoptions, nullptr)) != -1;) {
    switch (letter) {
      case 'd':
        choose(options, Form::diff);
        break;
      case 'j':
        choose(options, Form::json);
        break;
      case 's':
        choose(options, Form::summary);
        break;
      case 'c':
        choosecolor(options, optarg);
        break;
      case 'h':
        options.help = true;
        break;
      case 'v':
        options.version = true;
        break;
      default:
        options.wrong = true;
    }
  }
  return options;
}

bool colored(When when) {
  if (when != When::automatic) return when == When::always;
  const char* const nocolor = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool dumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  return isatty(STDOUT_FILENO) == 1 && !dumb && (nocolor == nullptr || *nocolor == '\0');
}

int printerror = 0;  // the first, why something that was printed got lost

void printed(bool whole) {
  if (!whole && printerror == 0) printerror = errno;
}

void print(std::string_view text) { printed(std::fwrite(text.data(), 1, text.size(), stdout) == text.size()); }

/// One line on standard error.
void complain(std::string_view about, std::string_view what) {
  (void)std::fprintf(stderr, "tolvane-preview: %.*s: %.*s\n", static_cast<int>(about.size()), about.data(),
                     static_cast<int>(what.size()), what.data());
}

/// A diff that nobody can feed to patch(1) need not be exact.
std::string diff(const Preview& preview, bool color) {
  if (preview.outcome != Outcome::changed) return {};
  const Request& request = preview.request;
  const std::string exact = tolvane::unified(preview.sources[0].input.bytes, preview.result, request.path,
                                             request.merge() ? "merged" : request.path);
  return color || isatty(STDOUT_FILENO) == 1 ? tolvane::shown(exact, color) : exact;
}

std::string formed(const Preview& preview, const Options& options) {
  switch (options.form) {
    case Form::diff:
      return diff(preview, colored(options.color));
    case Form::json:
      return tolvane::json(preview);
    case Form::summary:
      return tolvane::summary(preview);
    default:
      return tolvane::report(preview, colored(options.color));
  }
}

std::string nameof(const Request& request) {
  const std::string name = tolvane::visible(request.path);
  return request.merge() ? name + ", " + tolvane::visible(request.networkpath) : name;
}

/// Shows the preview of one request and returns the exit status for it.
int show(const Request& request, const Options& options) {
  try {
    const Preview preview = tolvane::previewof(request);
    print(formed(preview, options));
    printed(std::fflush(stdout) == 0);  // before what is complained about
    if (preview.outcome == Outcome::trouble) complain(nameof(request), tolvane::troubletext(preview));
    return preview.outcome == Outcome::trouble ? trouble : preview.outcome == Outcome::changed ? somechange : nochange;
  } catch (const std::bad_alloc&) {
    complain(request.path, "Insufficient memory");
    return trouble;
  }
}

int usage() {
  (void)std::fputs(usagetext, stderr);
  return trouble;
}

int help() {
  print(usagetext);
  print(helptext);
  return nochange;
}

int version() {
  print("tolvane-preview ");
  print(tolvane::currentversion);
  print("\n");
  return nochange;
}

/// A blank line stands between two reports.
int showall(char** paths, char** end, const Options& options) {
  int status = nochange;
  for (char** path = paths; path != end; ++path) {
    if (options.form == Form::report && path != paths) print("\n");
    status = std::max(status, show({*path}, options));
  }
  return status;
}

int run(int words, char** line) {
  const Options options = read(words, line);
  if (options.wrong) return usage();
  if (options.help) return help();
  if (options.version) return version();
  char** const first = line + optind;
  char** const end = line + words;
  if (first == end) return usage();
  if (std::string_view(*first) != "merge") return showall(first, end, options);
  return end - first == 3 ? show({first[1], first[2]}, options) : usage();
}

/// The status, unless what was printed got lost on its way.
int delivered(int status) {
  printed(std::fflush(stdout) == 0);
  printed(std::fclose(stdout) == 0);
  if (printerror == 0) return status;
  if (printerror != EPIPE) complain("standard output", std::strerror(printerror));
  return trouble;
}

}  // namespace

int main(int words, char** line) {
  (void)std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone is trouble like any other
  (void)std::signal(SIGXFSZ, SIG_IGN);
  return delivered(run(words, line));
}
