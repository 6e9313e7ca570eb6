// The bytes of a file, and what becomes of them when the line store is filled.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

/// A file as far as it could be read, and the errors of opening and reading it, 0 where there was none.
struct Input {
  std::string bytes;
  int openerror = 0;
  int readerror = 0;
};

/// The most bytes that are previewed: what is larger is no parameter file, and has the read error EFBIG.
inline constexpr std::size_t largestinput = 64 << 20;

/// Reads the file once, so that it may be a pipe.
Input readinput(const char* path);

/// A stream that gives those bytes, which must outlive it, and then the error. None, with errno set, when it cannot be
/// opened or the input could not.
std::FILE* serve(const Input& input);

/// A line as it comes into the store, a piece of the bytes, and the number of its line in the file, from 1.
struct Loaded {
  std::string_view text;
  std::size_t number;
};

/// What reading does to the lines of a file.
struct Reading {
  std::vector<Loaded> lines;
  std::size_t blank = 0;  // lines, or rests of split ones, that are dropped because they are blank
  std::size_t split = 0;  // lines of more than 511 characters
  std::size_t cut = 0;    // lines that lose what stands behind a NUL byte
};

/// Tells how `load` reads the bytes.
Reading readingof(std::string_view bytes);

}  // namespace tolvane
