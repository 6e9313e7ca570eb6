// Tests on the line store: text in, an operation, text out.
#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

namespace tolvane {
struct Step;
}

namespace tolvane::test {

/// Replaces the store by what `parse` makes of these bytes, and empties the pair lists.
void given(std::string_view bytes);

/// The store as lines, each ended by a newline; fails the test when its links do not hold together.
std::string lines();

/// What stands behind the head in the lines; lines that do not begin with it fail the test.
std::string behind(std::string_view head, const std::string& lines);

/// Gives every test an empty store and empty pair lists, and frees what it leaves.
class StoreTest : public testing::Test {
 protected:
  StoreTest();
  ~StoreTest() override;
};

/// The lines after the step of that version, as the ladder's table has it, was applied to the given lines. A version
/// without a row in the table fails the test.
std::string converted(std::string_view version, std::string_view before);

/// The same for a step of another ladder.
std::string converted(std::span<const Step> ladder, std::string_view version, std::string_view before);

}  // namespace tolvane::test
