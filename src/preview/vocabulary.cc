#include "preview/vocabulary.h"

#include <algorithm>
#include <functional>

namespace tolvane {

namespace {

constexpr std::size_t leastslots = 1024;
constexpr std::size_t piecesize = 1 << 16;

/// Where a line is looked for first. A header is equal to any other one of its text.
std::size_t placeof(std::string_view text, std::uint32_t section, std::uint32_t hash) {
  const std::uint32_t above = text.starts_with('[') ? Vocabulary::nosection : section;
  return (hash + std::uint64_t{above} * 0x9e3779b9U) * 0x9e3779b97f4a7c15U >> 32U;
}

}  // namespace

std::uint32_t hashof(std::string_view text) { return static_cast<std::uint32_t>(std::hash<std::string_view>{}(text)); }

Vocabulary::Vocabulary() : slots_(leastslots) { number("", nosection); }

std::uint32_t Vocabulary::number(std::string_view text, std::uint32_t section) {
  const std::uint32_t hash = hashof(text);
  const std::uint32_t found = slots_[slot(text, section, hash)];
  return found != 0 ? found - 1 : add(copied(text), section, hash);
}

std::uint32_t Vocabulary::lent(std::string_view text, std::uint32_t section) {
  const std::uint32_t hash = hashof(text);
  const std::uint32_t found = slots_[slot(text, section, hash)];
  return found != 0 ? found - 1 : add(text, section, hash);
}

std::uint32_t Vocabulary::known(std::string_view text, std::uint32_t section) const {
  const std::uint32_t found = slots_[slot(text, section, hashof(text))];
  return found == 0 ? 0 : found - 1;
}

/// The slot of a line, or the free one where it belongs.
std::size_t Vocabulary::slot(std::string_view text, std::uint32_t section, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t place = placeof(text, section, hash) & mask;; place = (place + 1) & mask) {
    if (slots_[place] == 0) return place;
    const std::uint32_t number = slots_[place] - 1;
    const Known& known = lines_[number];
    if (known.hash != hash || this->text(number) != text) continue;
    if (known.section == section || text.starts_with('[')) return place;
  }
}

std::uint32_t Vocabulary::add(std::string_view text, std::uint32_t section, std::uint32_t hash) {
  if (2 * (lines_.size() + 1) > slots_.size()) grow(2 * slots_.size());
  const auto number = static_cast<std::uint32_t>(lines_.size());
  slots_[slot(text, section, hash)] = number + 1;
  const std::uint32_t own = text.starts_with('[') ? number : section;
  lines_.push_back({text.data(), static_cast<std::uint32_t>(text.size()), own, hash});
  return number;
}

std::string_view Vocabulary::copied(std::string_view text) {
  if (copies_.empty() || copies_.back().capacity() - copies_.back().size() < text.size()) {
    copies_.emplace_back().reserve(std::max(piecesize, text.size()));
  }
  std::string& piece = copies_.back();
  piece.append(text);
  return std::string_view{piece}.substr(piece.size() - text.size());
}

void Vocabulary::reserve(std::size_t more) {
  lines_.reserve(lines_.size() + more);
  std::size_t size = slots_.size();
  while (size < 2 * (lines_.size() + more)) size *= 2;
  if (size > slots_.size()) grow(size);
}

void Vocabulary::grow(std::size_t size) {
  std::vector<std::uint32_t> slots(size);
  const std::size_t mask = size - 1;
  for (std::uint32_t number = 0; number < lines_.size(); ++number) {
    const Known& known = lines_[number];
    std::size_t place = placeof(text(number), known.section, known.hash) & mask;
    while (slots[place] != 0) place = (place + 1) & mask;
    slots[place] = number + 1;
  }
  slots_ = std::move(slots);
}

}  // namespace tolvane
