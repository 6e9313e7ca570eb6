#include "tests/growth/families.h"

namespace tolvane::test {

namespace {

/// A permutation of the numbers from 1 to the count.
int shuffled(int number, int count) {
  constexpr int prime = 619;  // does not divide the counts
  return number * prime % count + 1;
}

/// What a mark in line n stands for; 0 for any other character.
int markednumber(char mark, int n, int count) {
  if (mark == '#') return n;
  if (mark == '@') return (n + 1) / 2;
  if (mark == '>') return n + 1;
  if (mark == '<') return count + 1 - n;
  if (mark == '?') return shuffled(n, count);
  return mark == '^' ? count + 1 : 0;
}

std::string line(const std::string& pattern, int n, int count) {
  std::string result;
  for (const char character : pattern) {
    if (const int number = markednumber(character, n, count); number != 0) {
      result += std::to_string(number);
    } else {
      result += character;
    }
  }
  return result;
}

std::string lines(const std::string& part, int count) {
  if (part.ends_with('\n')) return line(part, 1, count);
  const std::size_t bar = part.find('|');
  std::string result;
  for (int n = 1; n <= count; ++n) {
    const bool second = bar != std::string::npos && n % 2 == 0;
    result += line(second ? part.substr(bar + 1) : part.substr(0, bar), n, count) + '\n';
  }
  return result;
}

}  // namespace

void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }

std::string file(const Family& family, int count) {
  std::string result;
  for (const std::string& part : family.parts) result += lines(part, count);
  return result;
}

}  // namespace tolvane::test
