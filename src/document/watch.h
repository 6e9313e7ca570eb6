// What a conversion lets another program see of it while it runs. `tolvane` itself watches nothing: its files are
// opened and its messages printed straight away.
#pragma once

#include <cstdio>
#include <initializer_list>
#include <string_view>

#include "document/messages.h"

namespace tolvane {

/// The watcher's procedures, none of which may change the line store.
struct Watch {
  /// Opens the file that `load` reads, for reading. None, with errno set, when it cannot.
  std::FILE* (*open)(const char* path);
  /// The line store holds a file as it was read.
  void (*loaded)();
  /// A part of the conversion begins: a step of a ladder with its version, or what is done besides them, without one.
  void (*part)(std::string_view version, std::string_view phrase);
  /// A piece of a message for standard output.
  void (*print)(std::string_view text);
};

inline constexpr Watch nobody{
    [](const char* path) { return std::fopen(path, "re"); },
    [] {},
    [](std::string_view /*version*/, std::string_view /*phrase*/) {},
    say,
};

inline Watch watch = nobody;

/// Prints a message, given in pieces.
inline void print(std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces) watch.print(piece);
}

}  // namespace tolvane
