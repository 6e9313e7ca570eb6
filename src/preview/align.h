// Which items of a sequence stand in another one too, in the same order.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "preview/repeats.h"

namespace tolvane {

/// Items of the first sequence and as many equal ones of the second, one behind the other in both.
struct Match {
  std::size_t before;
  std::size_t after;
  std::size_t length;
  bool operator==(const Match&) const = default;
};

/// Equal items, ascending in both sequences. They are as many as can be wherever the sequences differ in few places or
/// repeat little. Every item is smaller than `items`. Time and memory stay close to the number of items and to `items`;
/// the memory for equal items one behind the other in the first sequence, if given as repeats, is that of one.
std::vector<Match> align(std::span<const std::uint32_t> before, std::span<const std::uint32_t> after,
                         std::size_t items);
std::vector<Match> align(const Repeats& before, std::span<const std::uint32_t> after, std::size_t items);

}  // namespace tolvane
