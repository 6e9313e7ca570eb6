// The loops of the sources, and which of their lines the blocks of the program belong to.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/work.h"

namespace tolvane::test {

/// A loop: the text of its first line without indentation, and the numbers of its first and last line.
struct Loop {
  std::string text;
  int first;
  int last;
};

/// The lines of a text without their newlines.
std::vector<std::string> linesof(const std::string& text);

/// The loops of a formatted source: its lines with "for (" or "while (" and those that call an algorithm of the library
/// which walks a range. The body of a loop is what is indented below it.
std::vector<Loop> loopsof(const std::string& source);

/// A line of a source: the part of its path from "src/" on, and its number.
using SourceLine = std::pair<std::string, int>;

/// The lines that each block belongs to: its own, and those of the calls by which it was inlined. A block
/// of none of the sources has no lines.
std::map<std::uintptr_t, std::vector<SourceLine>> linesofblocks(const BlockCounts& blocks);

}  // namespace tolvane::test
