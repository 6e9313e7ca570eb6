// The bytes of a file that is previewed.
#pragma once

#include <string>

namespace tolvane {

/// A file, and the error of opening or reading it, 0 for none.
struct Input {
  std::string bytes;
  int error = 0;
};

/// The most bytes that are previewed: what is larger is no parameter file, and has the error EFBIG.
inline constexpr std::size_t largestinput = 64 << 20;

/// Reads the file once, so that it may be a pipe.
Input readinput(const char* path);

}  // namespace tolvane
