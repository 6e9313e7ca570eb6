// Replays the fuzz corpus: the claims of each target hold for each of its inputs.
#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "fuzz/properties.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class Corpus : public StoreTest {
 protected:
  static void replay(const std::string& target, void (*run)(std::string_view input)) {
    int inputs = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(TOLVANE_SOURCE "/fuzz/corpus/" + target)) {
      ++inputs;
      std::string broken;
      try {
        run(contents(entry.path()));
      } catch (const std::logic_error& claim) {
        broken = claim.what();
      }
      EXPECT_EQ(broken, "") << entry.path();
    }
    EXPECT_GE(inputs, 50);
  }
};

TEST_F(Corpus, OfUpdateKeepsTheClaims) { replay("update", fuzz::update); }
TEST_F(Corpus, OfMergeKeepsTheClaims) { replay("merge", fuzz::merge); }
TEST_F(Corpus, OfFieldsKeepsTheClaims) { replay("fields", fuzz::fields); }

// Few files in the tree; `script/fuzz --keep` chooses them.
TEST_F(Corpus, IsSmall) {
  const auto isfile = [](const fs::directory_entry& entry) { return entry.is_regular_file(); };
  const fs::recursive_directory_iterator corpus(TOLVANE_SOURCE "/fuzz/corpus");
  EXPECT_LE(std::count_if(begin(corpus), end(corpus), isfile), 300);
}

TEST_F(Corpus, ClaimsCanBreak) {
  EXPECT_THROW(fuzz::claim(false, "x"), std::logic_error);
  EXPECT_THROW(fuzz::claimkept({"a", "b"}, {"b", "a"}, [](const std::string&) { return true; }), std::logic_error);
  EXPECT_THROW(fuzz::ends([] { throw std::out_of_range("x"); }, 1), std::out_of_range);
}

}  // namespace

}  // namespace tolvane::test
