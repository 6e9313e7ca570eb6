#include "preview/account.h"

#include <gmock/gmock.h>

#include <random>
#include <set>

namespace tolvane::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AccountOfLines : public testing::Test {
 protected:
  /// The lines, each ended by a newline.
  Snapshot lines(std::string_view text) {
    Snapshot result;
    std::uint32_t section = Vocabulary::nosection;
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      result.push_back(words.number(text.substr(0, end), section));
      section = words.section(result.back());
      text.remove_prefix(end + 1);
    }
    return result;
  }

  [[nodiscard]] std::string described(std::uint32_t line) const {
    return std::string(words.text(words.section(line))) + ' ' + std::string(words.text(line));
  }

  /// The changes as words: "added [A] k=1", "changed [A] k=1 to [A] k=2", ...
  std::vector<std::string> changes(std::string_view before, std::string_view after) {
    const Snapshot earlier = lines(before);
    const Snapshot later = lines(after);
    const std::vector<Change> found = compare(earlier, later, words);
    const Account account = count(earlier.size(), found);
    EXPECT_EQ(account.kept + account.changed + account.moved + account.removed, earlier.size());
    EXPECT_EQ(account.kept + account.changed + account.moved + account.added, later.size());
    std::vector<std::string> result;
    for (const auto& [kind, earlierline, laterline] : found) {
      if (kind == Change::Kind::added) result.push_back("added " + described(laterline));
      if (kind == Change::Kind::removed) result.push_back("removed " + described(earlierline));
      const std::string both = described(earlierline == UINT32_MAX ? laterline : earlierline) + " to ";
      if (kind == Change::Kind::moved) result.push_back("moved " + both + described(laterline));
      if (kind == Change::Kind::changed) result.push_back("changed " + both + described(laterline));
    }
    return result;
  }

  Vocabulary words;
};

TEST_F(AccountOfLines, NumbersEqualLinesAlike) {
  const std::uint32_t header = words.number("[A]", Vocabulary::nosection);
  EXPECT_EQ(words.section(header), header);
  EXPECT_EQ(words.number("[A]", header), header) << "a header is its own section";
  EXPECT_EQ(words.number("a", header), words.number(std::string("a"), header));
  EXPECT_NE(words.number("a", header), words.number("A", header));
  EXPECT_NE(words.number("a", header), words.number("a", Vocabulary::nosection));
  EXPECT_EQ(words.text(words.number("a", header)), "a");
  EXPECT_EQ(words.section(words.number("a", header)), header);
  EXPECT_EQ(words.known("a", header), words.number("a", header));
  EXPECT_EQ(words.known("b", header), words.number("", Vocabulary::nosection));
}

TEST_F(AccountOfLines, KeepsEachNumberHoweverManyThereAre) {
  std::vector<std::uint32_t> numbers;
  std::uint32_t section = Vocabulary::nosection;
  for (int n = 0; n < 10000; ++n) {
    if (n % 100 == 0) section = words.number('[' + std::to_string(n) + ']', section);
    numbers.push_back(words.number(std::to_string(n % 300), section));
    ASSERT_EQ(words.text(numbers.back()), std::to_string(n % 300));
    ASSERT_EQ(words.section(numbers.back()), section);
  }
  EXPECT_EQ(std::set<std::uint32_t>(numbers.begin(), numbers.end()).size(), numbers.size());
  EXPECT_EQ(words.number("99", words.number("[0]", section)), numbers[99]);
}

TEST_F(AccountOfLines, KeepsWhatStandsWhereItStood) {
  EXPECT_THAT(changes("", ""), IsEmpty());
  EXPECT_THAT(changes("x\n[A]\nk=1\n", "x\n[A]\nk=1\n"), IsEmpty());
}

TEST_F(AccountOfLines, TellsWhatIsAddedAndRemoved) {
  EXPECT_THAT(changes("[A]\nk=1\n", "[A]\nk=1\nl=2\n"), ElementsAre("added [A] l=2"));
  EXPECT_THAT(changes("[A]\nk=1\nl=2\n", "[A]\nl=2\n"), ElementsAre("removed [A] k=1"));
  EXPECT_THAT(changes("", "x\n[A]\n"), ElementsAre("added  x", "added [A] [A]"));
}

TEST_F(AccountOfLines, TellsAnotherValueOfTheSameEntry) {
  EXPECT_THAT(changes("[A]\nk=1\nl=2\n", "[A]\nk=3\nl=2\n"), ElementsAre("changed [A] k=1 to [A] k=3"));
  EXPECT_THAT(changes("[A]\nk\n", "[A]\nk=\n"), ElementsAre("changed [A] k to [A] k="));
  EXPECT_THAT(changes("[A]\nk=1\n[B]\n", "[A]\n[B]\nk=3\n"), ElementsAre("removed [A] k=1", "added [B] k=3"))
      << "an entry of another section is another entry";
  EXPECT_THAT(changes("[A]\nk=1\n", "[A]\nK=1\n"), ElementsAre("removed [A] k=1", "added [A] K=1"));
}

TEST_F(AccountOfLines, PairsDuplicateKeysInTheirOrder) {
  EXPECT_THAT(changes("[A]\nk=1\nk=2\n", "[A]\nk=3\nk=4\n"),
              ElementsAre("changed [A] k=1 to [A] k=3", "changed [A] k=2 to [A] k=4"));
  EXPECT_THAT(changes("[A]\nk=1\nk=2\n", "[A]\nk=3\nk=2\n"), ElementsAre("changed [A] k=1 to [A] k=3"));
}

TEST_F(AccountOfLines, TellsTheSameLineInAnotherPlace) {
  EXPECT_THAT(changes("[A]\nk=1\n[B]\nl=2\n", "[A]\n[B]\nl=2\nk=1\n"), ElementsAre("moved [A] k=1 to [B] k=1"));
  EXPECT_THAT(changes("[A]\nk=1\nl=2\nm=3\n", "[A]\nl=2\nm=3\nk=1\n"), ElementsAre("moved [A] k=1 to [A] k=1"));
}

TEST_F(AccountOfLines, PrefersTheSameSectionForALineThatMoved) {
  EXPECT_THAT(changes("[A]\nk=1\n[B]\nk=1\nl=2\nm=3\n", "[A]\n[B]\nl=2\nm=3\nk=1\n[C]\nk=1\n"),
              ElementsAre("moved [B] k=1 to [B] k=1", "added [C] [C]", "moved [A] k=1 to [C] k=1"));
}

TEST_F(AccountOfLines, MovesLinesThatJoinAnotherSection) {
  // The header alone is gone: its lines belong to the section before.
  EXPECT_THAT(changes("[A]\n[B]\nk=1\n", "[A]\nk=1\n"), ElementsAre("removed [B] [B]", "moved [B] k=1 to [A] k=1"));
  EXPECT_THAT(changes("[A]\nk=1\n", "[B]\nk=1\n"),
              ElementsAre("removed [A] [A]", "added [B] [B]", "moved [A] k=1 to [B] k=1"));
}

TEST_F(AccountOfLines, TellsAnotherNumberInItsSeries) {
  EXPECT_THAT(changes("[A]\nM_1=x\nM_2=y\nM_3=z\n", "[A]\nM_1=y\nM_2=z\n"),
              ElementsAre("removed [A] M_1=x", "changed [A] M_2=y to [A] M_1=y", "changed [A] M_3=z to [A] M_2=z"));
  EXPECT_THAT(changes("[A]\nM_1=x\n", "[A]\nN_1=x\n"), ElementsAre("removed [A] M_1=x", "added [A] N_1=x"));
  EXPECT_THAT(changes("[A]\ncpus=2\n", "[A]\nconnections=2\n"),
              ElementsAre("removed [A] cpus=2", "added [A] connections=2"))
      << "an equal value alone says nothing";
  EXPECT_THAT(changes("[A]\nM=x\n", "[A]\nM_1=x\n"), ElementsAre("removed [A] M=x", "added [A] M_1=x"));
}

TEST_F(AccountOfLines, HeadersAreNoEntries) {
  EXPECT_THAT(changes("[A=1]\n", "[A=2]\n"), ElementsAre("removed [A=1] [A=1]", "added [A=2] [A=2]"));
  EXPECT_THAT(changes("[A1=x\n", "[A2=x\n"), ElementsAre("removed [A1=x [A1=x", "added [A2=x [A2=x"));
}

TEST_F(AccountOfLines, ShowsWhatIsRemovedWhereItStood) {
  EXPECT_THAT(changes("[A]\na=1\nb=1\nc=1\n[B]\nd=1\n", "[A]\nb=1\n[B]\nd=1\ne=1\n"),
              ElementsAre("removed [A] a=1", "removed [A] c=1", "added [B] e=1"));
}

TEST_F(AccountOfLines, HoldsForRandomLines) {
  std::mt19937 random(9);
  const auto text = [&] {
    std::string result;
    for (std::size_t n = random() % 12; n > 0; --n) {
      const std::string letter(1, static_cast<char>('A' + random() % 3));
      const std::string digit = std::to_string(random() % 3);
      result +=
          random() % 4 == 0 ? '[' + letter + "]\n" : letter + '_' + digit + '=' + std::to_string(random() % 3) + '\n';
    }
    return result;
  };
  for (int round = 0; round < 3000; ++round) changes(text(), text());  // which checks the sums
}

}  // namespace

}  // namespace tolvane::test
