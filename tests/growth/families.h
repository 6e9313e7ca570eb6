// Families of files: kinds of file of any size, and what converts them.
#pragma once

#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace tolvane::test {

/// A kind of file. A part that ends with a newline is written once, any other part as one line for each number 1, 2,
/// ... A mark in it stands for a number: "#" for the number itself, "@" for half of it, ">" for it and 1 more, "<" for
/// the numbers in descending order, "?" for them in no order, "^" for the last one and 1 more. What follows the first
/// "|" of a part is written for even numbers in place of what stands before it.
struct Family {
  std::string name;
  void (*convert)(const std::string& file);
  std::vector<std::string> parts;
};

void PrintTo(const Family& family, std::ostream* out);

/// The file of the family with that many lines for each part that has a mark.
std::string file(const Family& family, int count);

/// The families whose keys are unique within each section.
std::span<const Family> uniquefamilies();

/// The families of which the rules ask more than a few looks at each line: duplicate keys, and mapping sections that
/// join others.
std::span<const Family> duplicatedfamilies();

}  // namespace tolvane::test
