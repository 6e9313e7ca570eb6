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

#include "document/room.h"
#include "document/versions.h"
#include "preview/escape.h"
#include "preview/forms.h"
#include "preview/preview.h"
#include "preview/unified.h"

namespace {

using tolvane::Detail;
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
  if (when == "always") options.color = When::always;
  if (when == "never") options.color = When::never;
  if (when == "auto") options.color = When::automatic;
}

Options read(int argc, char** argv) {
  Options options;
  opterr = 0;
  for (int letter = 0; (letter = getopt_long(argc, argv, "", longoptions, nullptr)) != -1;) {
    if (letter == 'd') choose(options, Form::diff);
    if (letter == 'j') choose(options, Form::json);
    if (letter == 's') choose(options, Form::summary);
    if (letter == 'c') choosecolor(options, optarg);
    options.help |= letter == 'h';
    options.version |= letter == 'v';
    options.wrong |= letter == '?';
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

/// Prints on standard output, and remembers the first error, 0 for none.
struct Output {
  int error = 0;

  void check(bool whole) {
    if (!whole && error == 0) error = errno;
  }
  void print(std::string_view text) { check(std::fwrite(text.data(), 1, text.size(), stdout) == text.size()); }
};

/// One line on standard error.
void complain(std::string_view about, std::string_view what) {
  (void)std::fprintf(stderr, "tolvane-preview: %.*s: %.*s\n", static_cast<int>(about.size()), about.data(),
                     static_cast<int>(what.size()), what.data());
}

/// A diff that nobody can feed to patch(1) need not be exact.
void printdiff(const Preview& preview, bool color, Output& output) {
  if (preview.outcome != Outcome::changed) return;
  const bool exact = !color && isatty(STDOUT_FILENO) != 1;
  const Request& request = preview.request;
  tolvane::unified(
      preview.sources[0].bytes, preview.result, request.path, request.merge() ? "merged" : request.path,
      [&](std::string_view piece) { output.print(exact ? piece : std::string_view(tolvane::shown(piece, color))); });
}

void print(const Preview& preview, const Options& options, Output& output) {
  if (options.form == Form::diff) printdiff(preview, colored(options.color), output);
  if (options.form == Form::json) output.print(tolvane::json(preview));
  if (options.form == Form::summary) output.print(tolvane::summary(preview));
  if (options.form == Form::report) output.print(tolvane::report(preview, colored(options.color)));
}

std::string nameof(const Request& request) {
  const std::string name = tolvane::visible(request.path);
  return request.merge() ? name + ", " + tolvane::visible(request.networkpath) : name;
}

Detail detailof(Form form) {
  if (form == Form::diff) return Detail::contents;
  return form == Form::summary ? Detail::account : Detail::parts;
}

/// Shows the preview of one request and returns the exit status for it.
int show(Request request, const Options& options, Output& output) {
  request.detail = detailof(options.form);
  try {
    const Preview preview = tolvane::previewof(request);
    print(preview, options, output);
    output.check(std::fflush(stdout) == 0);  // before what is complained about
    if (preview.outcome == Outcome::trouble) complain(nameof(request), tolvane::troubletext(preview));
    if (preview.outcome == Outcome::trouble) return trouble;
    return preview.outcome == Outcome::changed ? somechange : nochange;
  } catch (const std::bad_alloc&) {
    complain(request.path, "Insufficient memory");
    return trouble;
  }
}

int usage() {
  (void)std::fputs(usagetext, stderr);
  return trouble;
}

int help(Output& output) {
  output.print(usagetext);
  output.print(helptext);
  return nochange;
}

int version(Output& output) {
  output.print(std::string("tolvane-preview ").append(tolvane::currentversion) + '\n');
  return nochange;
}

/// A blank line stands between two reports.
int showall(char** paths, char** end, const Options& options, Output& output) {
  int status = nochange;
  for (char** path = paths; path != end; ++path) {
    if (options.form == Form::report && path != paths) output.print("\n");
    status = std::max(status, show({*path}, options, output));
  }
  return status;
}

int run(int argc, char** argv, Output& output) {
  const Options options = read(argc, argv);
  if (options.wrong) return usage();
  if (options.help) return help(output);
  if (options.version) return version(output);
  char** const first = argv + optind;
  char** const end = argv + argc;
  if (first == end) return usage();
  if (std::string_view(*first) != "merge") return showall(first, end, options, output);
  return end - first == 3 ? show({first[1], first[2]}, options, output) : usage();
}

/// The status, unless what was printed got lost on its way.
int delivered(int status, Output& output) {
  output.check(std::fflush(stdout) == 0);
  output.check(std::fclose(stdout) == 0);
  if (output.error == 0) return status;
  if (output.error != EPIPE) complain("standard output", std::strerror(output.error));
  return trouble;
}

}  // namespace

int main(int argc, char** argv) {
  tolvane::keepmemory();
  (void)std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone is trouble like any other
  (void)std::signal(SIGXFSZ, SIG_IGN);
  Output output;
  const int status = run(argc, argv, output);
  return delivered(status, output);
}
