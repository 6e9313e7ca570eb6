// Which items of a sequence stand in another one too, in the same order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tolvane {

/// An item of the first sequence and the equal one of the second.
struct Match {
  std::size_t before;
  std::size_t after;
  bool operator==(const Match&) const = default;
};

/// Pairs of equal items, ascending in both sequences. They are as many as can be wherever the sequences differ in few
/// places or repeat little; time and memory stay close to the number of items whatever they hold.
std::vector<Match> align(std::span<const std::uint64_t> before, std::span<const std::uint64_t> after);

}  // namespace tolvane
