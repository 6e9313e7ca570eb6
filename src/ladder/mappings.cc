#include "ladder/mappings.h"

#include <algorithm>
#include <climits>
#include <functional>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"

namespace tolvane {

namespace {

constexpr std::string_view mappingprefix = "GloMap_";
constexpr std::string_view subscriptprefix = "GloSLM_";

/// The global of a mapping: field 1.
std::string_view globalof(const Line& mapping) { return firstfield(valueof(mapping), ','); }

bool isdropped(const Line& mapping) {
  const std::string_view global = globalof(mapping);
  return global.starts_with("odd") || global == "rINDEXCLASS" || global == "mdd";
}

void put(Namesakes& namesakes, const Mapping& mapping) {
  namesakes.push_back(mapping);
  std::push_heap(namesakes.begin(), namesakes.end(), std::greater{});
}

Mapping takefirst(Namesakes& namesakes) {
  std::pop_heap(namesakes.begin(), namesakes.end(), std::greater{});
  const Mapping first = namesakes.back();
  namesakes.pop_back();
  return first;
}

/// Exchanges a mapping with the first of its namesakes.
void exchangefirst(Namesakes& namesakes, Mapping& mapping) {
  if (namesakes.size() > 1) std::pop_heap(namesakes.begin(), namesakes.end(), std::greater{});
  std::swap(namesakes.back(), mapping);
  if (namesakes.size() > 1) std::push_heap(namesakes.begin(), namesakes.end(), std::greater{});
}

/// Continues the series by what stood behind the gap that was just filled.
void readon(Mappings& mappings) {
  auto& [firsts, further, hidden, subscripts, kept, lines] = mappings;
  for (auto next = hidden.find(firsts.size() + 1); next != hidden.end(); next = hidden.find(firsts.size() + 1)) {
    firsts.push_back(takefirst(next->second));
    if (!next->second.empty()) further.emplace(next->first, std::move(next->second));
    hidden.erase(next);
  }
}

/// Adds a mapping under a number, which need not be the one in its key any more.
void add(Mappings& mappings, std::size_t number, const Mapping& mapping) {
  auto& [firsts, further, hidden, subscripts, kept, lines] = mappings;
  if (number > firsts.size() + 1) {
    put(hidden[number], mapping);
  } else if (number == firsts.size() + 1) {
    firsts.push_back(mapping);
    if (!hidden.empty()) readon(mappings);
  } else if (Mapping& first = firsts[number - 1]; first > mapping) {
    put(further[number], std::exchange(first, mapping));
    kept = std::min(kept, number - 1);
  } else {
    put(further[number], mapping);
  }
}

/// Deletes the subscript-level mappings of a global.
void dropsubscripts(Mappings& mappings, std::string_view global) {
  for (int n = 1;; ++n) {
    const Text key{subscriptprefix, global, '_', n};
    const auto found = mappings.subscripts.lower_bound({key, 0});
    if (found == mappings.subscripts.end() || found->first.first != key.view()) return;
    discard(found->second);
    mappings.subscripts.erase(found);
  }
}

/// The entries of `further`, in a row: so the processor need not wait for one to find the next.
using Further = std::vector<decltype(Mappings::further)::value_type*>;

/// Gives the first mapping of each number above the gap the number before; the first of number n is then
/// firsts[n - 1 + shift]. Only numbers with further mappings need work: what comes to them may not be the first there.
void closegap(Mappings& mappings, Further& further, std::size_t gap, std::size_t& shift) {
  auto& firsts = mappings.firsts;
  const std::size_t last = firsts.size() - shift++;
  auto entry = std::partition_point(further.begin(), further.end(), [=](const auto* one) { return one->first < gap; });
  for (; entry != further.end() && (*entry)->first < last; ++entry) {
    auto& [number, others] = **entry;
    Mapping& moved = firsts[number - 1 + shift];
    if (moved > others.front()) exchangefirst(others, moved);
  }
  if (entry == further.end()) return;
  // Kept: no mapping comes to the last number, and the first of its further ones is deleted.
  auto& others = (*entry)->second;
  discard(takefirst(others).line);
  if (!others.empty()) firsts.push_back(takefirst(others));
  if (!others.empty()) return;
  further.pop_back();
  mappings.further.erase(last);
}

void renumber(const Mapping& mapping, std::size_t number) {
  if (mapping.number != number) settext(*mapping.line, Text(mappingprefix, number, '=', valueof(*mapping.line)));
}

}  // namespace

void addline(Mappings& mappings, Line& line, std::uint32_t place) {
  if (const auto number = static_cast<std::uint32_t>(numberof(line, mappingprefix))) {
    add(mappings, number, {&line, place, number & std::uint32_t{INT_MAX}, isdropped(line) ? 1U : 0U});
  } else if (line.text().view().starts_with(subscriptprefix)) {
    mappings.subscripts.try_emplace({keyof(line), place}, &line);
  } else {
    return;
  }
  ++mappings.lines;
}

void join(Mappings& mappings, Mappings&& joined) {
  if (mappings.lines < joined.lines) std::swap(mappings, joined);
  for (std::size_t number = 1; number <= joined.firsts.size(); ++number) {
    add(mappings, number, joined.firsts[number - 1]);
  }
  for (const auto* others : {&joined.further, &joined.hidden}) {
    for (const auto& [number, namesakes] : *others) {
      for (const Mapping& mapping : namesakes) add(mappings, number, mapping);
    }
  }
  mappings.subscripts.merge(joined.subscripts);
  mappings.lines += joined.lines;
}

void dropmappings(Mappings& mappings) {
  auto& firsts = mappings.firsts;
  while (mappings.kept < firsts.size() && firsts[mappings.kept].dropped == 0) ++mappings.kept;
  if (mappings.kept == firsts.size()) return;
  Further further;
  for (auto& entry : mappings.further) further.push_back(&entry);
  std::size_t number = mappings.kept + 1;
  for (std::size_t shift = 0; number + shift <= firsts.size();) {
    const Mapping first = firsts[number - 1 + shift];
    if (first.dropped != 0) {
      dropsubscripts(mappings, Text(globalof(*first.line)));
      discard(first.line);
      closegap(mappings, further, number, shift);
    } else {
      firsts[number++ - 1] = first;
    }
  }
  mappings.kept = number - 1;
  firsts.erase(firsts.begin() + static_cast<std::ptrdiff_t>(mappings.kept), firsts.end());
}

void renumber(const Mappings& mappings) {
  for (std::size_t number = 1; number <= mappings.firsts.size(); ++number) {
    renumber(mappings.firsts[number - 1], number);
  }
  for (const auto* others : {&mappings.further, &mappings.hidden}) {
    for (const auto& [number, namesakes] : *others) {
      for (const Mapping& mapping : namesakes) renumber(mapping, number);
    }
  }
}

}  // namespace tolvane
