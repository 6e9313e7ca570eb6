// A sequence that keeps equal items one behind the other as one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tolvane {

class Repeats {
 public:
  void push_back(std::uint32_t item) {
    if (runs_.empty() || runs_.back().item != item) runs_.push_back({item, 0});
    runs_.back().end = ++size_;
  }

  [[nodiscard]] std::size_t size() const { return size_; }

  /// Quick for an item close to the one before.
  std::uint32_t operator[](std::size_t place) const {
    if (place >= runs_[run_].end || place < begin(run_)) find(place);
    return runs_[run_].item;
  }

 private:
  struct Run {
    std::uint32_t item;
    std::uint32_t end;
  };

  [[nodiscard]] std::size_t begin(std::size_t run) const { return run == 0 ? 0 : runs_[run - 1].end; }

  void find(std::size_t place) const {
    if (run_ + 1 < runs_.size() && place == runs_[run_].end) {
      ++run_;
    } else {
      const auto found =
          std::partition_point(runs_.begin(), runs_.end(), [=](const Run& run) { return run.end <= place; });
      run_ = static_cast<std::size_t>(found - runs_.begin());
    }
  }

  std::vector<Run> runs_;
  std::uint32_t size_ = 0;
  mutable std::size_t run_ = 0;
};

}  // namespace tolvane
