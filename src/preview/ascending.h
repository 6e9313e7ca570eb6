// Pairs of places that ascend in two sequences.
#pragma once

#include <cstdint>
#include <vector>

namespace tolvane {

/// An item of the first sequence and one of the second.
struct Pairing {
  std::uint32_t before;
  std::uint32_t after;
};

/// The longest run of pairings, given in the order of `before`, that ascends in `after` too.
std::vector<Pairing> ascending(const std::vector<Pairing>& pairings);

}  // namespace tolvane
