// Observing a conversion from another program while it runs. `tolvane` itself has no observer: what a conversion prints
// then goes straight to standard output.
#pragma once

#include <functional>
#include <initializer_list>
#include <string_view>

#include "document/messages.h"

namespace tolvane {

/// The observer's procedures. They must not change the line store.
struct Observer {
  /// A part of the conversion begins: a step of a ladder, or what is done besides them, without ladder and version.
  std::function<void(std::string_view ladder, std::string_view version, std::string_view phrase)> part;
  /// A piece of a message for standard output.
  std::function<void(std::string_view text)> print;
};

inline const Observer* observer = nullptr;

/// Lets an observer observe as long as it lives. One at a time.
class Observing {
 public:
  explicit Observing(const Observer& who) { observer = &who; }
  ~Observing() { observer = nullptr; }
  Observing(const Observing&) = delete;
  Observing& operator=(const Observing&) = delete;
};

/// Tells the observer, if there is one, that a step of a ladder begins.
inline void beginstep(std::string_view ladder, std::string_view version, std::string_view phrase) {
  if (observer != nullptr) observer->part(ladder, version, phrase);
}

/// The same for a part that is no step.
inline void beginpart(std::string_view phrase) { beginstep({}, {}, phrase); }

/// Prints a message, given in pieces.
inline void print(std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces) observer == nullptr ? say(piece) : observer->print(piece);
}

}  // namespace tolvane
