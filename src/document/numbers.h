// The integer rules of the whole program, written once: how a number is read, and how 32-bit results wrap.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "document/text.h"

namespace tolvane {

/// A 64-bit result as a 32-bit signed integer: the low 32 bits in two's complement. Sums and products of 32-bit
/// integers are computed in 64 bits, where they cannot overflow, and wrap here.
constexpr int int32(std::int64_t result) { return static_cast<int>(result); }

/// The product of two 64-bit integers, wrapping to 64 bits.
constexpr std::int64_t product64(std::int64_t first, std::int64_t second) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(first) * static_cast<std::uint64_t>(second));
}

/// The decimal number at the start of a text, as strtol reads it: leading white space and a sign are allowed, what
/// follows the digits is ignored, 0 when there are none, and out of range is the nearest 64-bit integer.
inline std::int64_t number64(const Text& text) { return std::strtol(text.c_str(), nullptr, 10); }

/// The same as a 32-bit signed integer.
inline int number(const Text& text) { return int32(number64(text)); }

}  // namespace tolvane
