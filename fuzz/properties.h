// What the fuzz targets share: what a file's lines are, and the claims that must hold for any input. No file is
// involved. A claim that does not hold is a std::logic_error, which nothing catches but a test.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::fuzz {

using Lines = std::vector<std::string>;

/// Throws a std::logic_error with the claim unless it holds.
void claim(bool holds, const std::string& claim);

/// The lines that the contents of a file stand for: cut at 511 characters, at NUL, and without blank ones.
Lines linesof(std::string_view contents);

/// The lines in the store. Claims that it is linked soundly and holds no text of more than 511 characters.
Lines storedlines();

/// The contents that a file of these lines has.
std::string contentsof(const Lines& lines);

/// Claims that the contents of the store can be written and read again, and returns its lines.
Lines claimreadable();

/// Does the work on an empty store, with an observer, and claims that it ends in one of the known ways within so many
/// basic blocks. True unless it ended early.
bool ends(const std::function<void()>& work, std::uint64_t allowed);

/// The blocks that the conversion of so many bytes may take: what all steps look up and add, also in the shortest
/// lines.
constexpr std::uint64_t conversion(std::size_t bytes) { return 500000 + std::uint64_t{1500} * bytes; }

/// Claims that the lines that are kept stand in the result as often and in the same order.
void claimkept(const Lines& before, const Lines& after, bool (*kept)(const std::string& line));

/// The targets: each takes an input apart, runs what it is named for and claims what must hold.
void update(std::string_view input);
void merge(std::string_view input);
void fields(std::string_view input);

}  // namespace tolvane::fuzz
