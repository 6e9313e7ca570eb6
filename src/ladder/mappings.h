// The global mappings of a mapping section, "GloMap_<n>", and the deletion of those of dropped globals. What is deleted
// leaves the store at once; the others get their new numbers at the end, each once.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "document/linestore.h"

namespace tolvane {

/// A global mapping, its place among all lines, the number in its key, and whether its global is dropped.
struct Mapping {
  Line* line;
  std::uint32_t place;
  std::uint32_t number : 31;
  std::uint32_t dropped : 1;

  friend bool operator>(const Mapping& mapping, const Mapping& other) { return mapping.place > other.place; }
};

static_assert(sizeof(Mapping) == 16);  // of duplicates, millions are moved

/// Mappings of one number, as a heap with the first of them in front.
using Namesakes = std::vector<Mapping>;

struct Mappings {
  std::vector<Mapping> firsts;               // the series: the first mapping of number n is firsts[n - 1]
  std::map<std::size_t, Namesakes> further;  // those of the series' numbers, by number
  std::map<std::size_t, Namesakes> hidden;   // those behind the gap, by number
  std::map<std::pair<std::string_view, std::uint32_t>, Line*> subscripts;  // "GloSLM_...", by key and place
  std::size_t kept = 0;   // so many of the series, from 1 on, are known not to be dropped
  std::size_t lines = 0;  // that were added
};

/// Adds a line of the section, at that place among all lines; what is no mapping is passed over.
void addline(Mappings& mappings, Line& line, std::uint32_t place);

/// Adds the mappings of a section that has joined this one. Takes no longer than the smaller of both, so that sections
/// that join one after the other are not read again and again.
void join(Mappings& mappings, Mappings&& joined);

/// Deletes the dropped mappings of the series with their subscript-level mappings, and closes the gaps.
void dropmappings(Mappings& mappings);

/// Writes the numbers that have changed.
void renumber(const Mappings& mappings);

}  // namespace tolvane
