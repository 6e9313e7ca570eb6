#include "preview/ascending.h"

#include <algorithm>

namespace tolvane {

std::vector<Pairing> ascending(const std::vector<Pairing>& pairings) {
  constexpr std::uint32_t none = UINT32_MAX;
  std::vector<std::uint32_t> tails;                            // the pairing that ends the best run of each length
  std::vector<std::uint32_t> previous(pairings.size(), none);  // in its run
  for (std::uint32_t n = 0; n < pairings.size(); ++n) {
    const auto earlier = [&](std::uint32_t other) { return pairings[other].after < pairings[n].after; };
    // Most pairings are longer runs, which spares the search.
    const bool longer = tails.empty() || earlier(tails.back());
    const auto tail = longer ? tails.end() : std::partition_point(tails.begin(), tails.end(), earlier);
    if (tail != tails.begin()) previous[n] = *std::prev(tail);
    if (tail == tails.end()) {
      tails.push_back(n);
    } else {
      *tail = n;
    }
  }
  std::vector<Pairing> run;
  run.reserve(tails.size());
  for (std::uint32_t n = tails.empty() ? none : tails.back(); n != none; n = previous[n]) run.push_back(pairings[n]);
  std::reverse(run.begin(), run.end());
  return run;
}

}  // namespace tolvane
