// Snapshots of the line store.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "document/linestore.h"
#include "document/parse.h"
#include "preview/account.h"

namespace tolvane {

/// Returns the lines of the store, which has just been filled with these bytes. They have to outlive the vocabulary.
Snapshot parsedlines(std::string_view bytes, Vocabulary& words);

/// The lines of the store as they were when they were last looked at.
class Watch {
 public:
  /// Forgets what was seen: the lines are these, the ones that are aside first.
  void set(Snapshot lines) { lines_ = std::move(lines); }

  [[nodiscard]] const Snapshot& lines() const { return lines_; }

  /// Looks at the lines that are aside, unless that is null, and behind them those of the store. Returns the earlier
  /// lines if they were others.
  std::optional<Snapshot> look(const Aside* aside, Vocabulary& words);

 private:
  Snapshot lines_;
  std::vector<const void*> nodes_;  // where they were: only a hint, for they may be freed
};

}  // namespace tolvane
