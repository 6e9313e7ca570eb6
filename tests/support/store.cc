#include "tests/support/store.h"

#include <algorithm>

#include "document/forget.h"
#include "document/linestore.h"
#include "document/parse.h"
#include "ladder/ladder.h"

namespace tolvane::test {

void given(std::string_view bytes) {
  forget();
  parse(bytes);
}

std::string lines() {
  std::string result;
  const Line* previous = nullptr;
  for (const Line* line = start; line != nullptr; line = line->next()) {
    EXPECT_EQ(line->previous(), previous) << "a broken link before " << line->text().c_str();
    result.append(line->text()).append("\n");
    previous = line;
  }
  EXPECT_EQ(last, previous) << "the tail is not the last line";
  return result;
}

std::string behind(std::string_view head, const std::string& lines) {
  EXPECT_EQ(lines.substr(0, head.size()), head);
  return lines.substr(std::min(head.size(), lines.size()));
}

StoreTest::StoreTest() { forget(); }

StoreTest::~StoreTest() { forget(); }

std::string converted(std::string_view version, std::string_view before) { return converted(ladder, version, before); }

std::string converted(std::span<const Step> ladder, std::string_view version, std::string_view before) {
  for (const Step& step : ladder) {
    if (step.version != version) continue;
    given(before);
    step.apply();
    return lines();
  }
  ADD_FAILURE() << "the ladder has no step " << version;
  return {};
}

}  // namespace tolvane::test
