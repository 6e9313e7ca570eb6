// Files of any contents: what the preview foretells is what `update` does, and its accounts add up.
#include <chrono>
#include <random>

#include "document/versions.h"
#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

using Random = std::mt19937;

template <typename Choices>
std::string_view oneof(const Choices& choices, Random& random) {
  return choices[random() % std::size(choices)];
}

constexpr std::string_view headers[] = {"[config]",
                                        "[Startup]",
                                        "[Net]",
                                        "[Datasets]",
                                        "[Namespaces]",
                                        "[SQL]",
                                        "[NspMap.USER]",
                                        "[Com]",
                                        "[ZPG.Applications]",
                                        "[Miscellaneous]",
                                        "[ConfigFile]",
                                        "[Journal]",
                                        "[NspMap.ORDERS]",
                                        "["};
constexpr std::string_view keys[] = {"LegacyNetConn", "implheap",  "Nsp_1",    "Nsp_2",    "GloMap_1", "GloMap_2",
                                     "GloMap_3",      "DataSet_1", "ZPGApp_1", "ZPGApp_2", "Com",      "JournalHalt",
                                     "Version",       "overview",  "nethard",  "",         "locksiz",  "globals"};
constexpr std::string_view values[] = {
    "1", "0",  "USER,USER", "oddA,x",   "mdd,y", "ORDERS", "/zpg/user,user",          "65536,7",
    "",  "-3", "\xe4\xff",  "\xc3\xa4", "a\tb",  "x=y",    "VELMLIB,velmlib,,0,R,0,0"};
constexpr std::string_view ends[] = {"\n", "\n", "\n", "\n", "\r\n", "\n\n", "\n \t\n"};

std::string line(Random& random) {
  const std::size_t kind = random() % 20;
  if (kind < 4) return std::string(oneof(headers, random));
  if (kind == 4) return "; a remark";
  if (kind == 5) return std::string(random() % 1300, 'z');
  if (kind == 6) return std::string("k=\0v", 4);
  return std::string(oneof(keys, random)).append("=").append(oneof(values, random));
}

std::string randomfile(Random& random) {
  std::string text = "[ConfigFile]\nVersion=";
  text += random() % 15 == 0 ? "6.0" : oneof(sVersions, random);
  text += random() % 15 == 0 ? "\n[config]\noverview=Abacus\n" : "\n[config]\noverview=Linux/AMD64~UNIX~1\n";
  for (std::size_t n = random() % 60; n > 0; --n) text += line(random) + std::string(oneof(ends, random));
  if (random() % 3 == 0) text.pop_back();
  return text;
}

class RandomFiles : public PreviewTest {};

TEST_F(RandomFiles, AreForetold) {
  Random random(11);
  std::string all;
  int changed = 0;
  for (int round = 0; round < 150; ++round) {
    const std::string before = randomfile(random);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove(entry.path());
    write(folder / "a", before);
    all += preview({"--json", "a"}).printed;
    const Outcome diff = preview({"--diff", "a"});
    const int status = run({"update", "a"}).status;
    const std::string after = contents(folder / "a");
    EXPECT_EQ(diff.status, status != 1 ? 2 : before == after ? 0 : 1) << before;
    write(folder / "before", before);
    if (diff.status != 1) continue;
    ++changed;
    ASSERT_EQ(patched("before", diff.printed), after) << before;
  }
  EXPECT_GT(changed, 100);
  expectvalid(all, 150);
}

TEST_F(RandomFiles, OfManyLinesAreQuick) {
  std::string large = "[ConfigFile]\nVersion=3.11\n[config]\noverview=Linux/AMD64~UNIX~3.11\n";
  for (int n = 0; n < 30000; ++n) {
    if (n % 50 == 0) large.append("\n[Section").append(std::to_string(n)).append("]\n");
    large.append(std::to_string(n)).append("=1\n");
  }
  write(folder / "a", large);
  const auto begin = std::chrono::steady_clock::now();
  const Outcome diff = preview({"--diff", "a"});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30)) << "quadratic work";
  ASSERT_EQ(diff.status, 1);
  EXPECT_LT(diff.printed.size(), 30000U);
  EXPECT_EQ(run({"update", "a"}).status, 1);
  EXPECT_EQ(patched("a_311", diff.printed), contents(folder / "a"));
}

}  // namespace

}  // namespace tolvane::test
