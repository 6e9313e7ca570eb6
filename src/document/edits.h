// The recurring shapes of a conversion's edits: a block of like edits as data, an entry that moves, a numeric minimum.
#pragma once

#include <span>
#include <string_view>

#include "document/text.h"

namespace tolvane {

/// One row of a block: what the verb is called with behind the section.
struct Edit {
  std::string_view key;
  std::string_view value;
};

/// What a block does with its rows: `saveentry`, `editentry`, `keepentry`, ...
using Verb = void (*)(std::string_view section, std::string_view key, std::string_view value);

/// Does the edits of a block, in their order, to one section.
void each(Verb verb, std::string_view section, std::span<const Edit> edits);

/// What `each` with `saveentry` does, in one walk through the section.
void saveall(std::string_view section, std::span<const Edit> edits);

/// Deletes the entry and returns true with its value; when it is missing, false with an empty value.
bool takeentry(std::string_view section, std::string_view key, Text& value);

/// Deletes the entry and returns its value, or the fallback when it is missing.
Text takeentry(std::string_view section, std::string_view key, std::string_view fallback);

/// Deletes the entry and appends its value under another key, perhaps in another section, without looking for an entry
/// of that key. Nothing happens when it is missing.
void moveentry(std::string_view section, std::string_view key, std::string_view newsection, std::string_view newkey);

/// The number that the entry holds, 0 when it is missing.
int numberin(std::string_view section, std::string_view key);

/// Sets the entry to the minimum, a decimal text, when its number is smaller: its whole value, so that further fields
/// go. Adds it when it is missing.
void minvalue(std::string_view section, std::string_view key, std::string_view minimum);

}  // namespace tolvane
