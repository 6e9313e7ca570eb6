// Entries and sections: looked up, added, changed and deleted.
#include "document/entries.h"

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Entries : public StoreTest {};

std::string textof(const Line* line) { return line == nullptr ? "none" : line->text().c_str(); }

TEST_F(Entries, FindSeesOnlyTheFirstSectionAndEntryOfAName) {
  given("[A]\nx=1\nx=2\n[B]\n[A]\ny=3\n");
  EXPECT_EQ(textof(find("[A]", "x")), "x=1");
  EXPECT_EQ(find("[A]", "y"), nullptr);
  given("[A]\nx=1\n[B]\nk=2\n");
  EXPECT_EQ(find("[A]", "k"), nullptr);
  EXPECT_EQ(textof(find("[B]", "k")), "k=2");
}

TEST_F(Entries, FindComparesWholeKeysExactly) {
  given("[A]\nKey =1\nkey=2\nKeys=3\n");
  EXPECT_EQ(find("[A]", "Key"), nullptr);
  EXPECT_EQ(textof(find("[A]", "Key ")), "Key =1");
  EXPECT_EQ(find("[a]", "key"), nullptr);
  given("[A]\nk\nk=5\n");
  EXPECT_EQ(textof(find("[A]", "k")), "k");
  given("[A]\na=1\n=x\n");
  EXPECT_EQ(textof(find("[A]", "")), "=x");
  given("[A]\na=1\n");
  EXPECT_EQ(find("[A]", ""), nullptr);
  given("[A]\na=b=c\n");
  EXPECT_EQ(find("[A]", "a=b"), nullptr);
}

TEST_F(Entries, FindWithoutKeyIsTheHeader) {
  given("x=1\n[A]\n[B]\n");
  EXPECT_EQ(textof(find("[B]")), "[B]");
  EXPECT_EQ(find("[C]"), nullptr);
  EXPECT_EQ(find("B"), nullptr);
}

TEST_F(Entries, KnowsWhereASectionBeginsAndEnds) {
  given("[A]\na\n=b\n[B]\n[C]\nc\n");
  EXPECT_EQ(textof(below(find("[A]"))), "a");
  EXPECT_EQ(textof(lastinsection(find("[A]"))), "=b");
  EXPECT_EQ(below(find("[B]")), nullptr);
  EXPECT_EQ(lastinsection(find("[B]")), find("[B]"));
  EXPECT_EQ(textof(lastinsection(find("[C]"))), "c");
  EXPECT_EQ(below(nullptr), nullptr);
}

TEST_F(Entries, AppendsOneEntryBehindTheOther) {
  given("[A]\na=1\n[B]\n");
  Line* end = nullptr;
  appendentry(end, "[A]", "b", "2");
  appendentry(end, "[A]", "c", "");
  EXPECT_EQ(lines(), "[A]\na=1\nb=2\nc=\n[B]\n");
  EXPECT_EQ(textof(end), "c=");
  EXPECT_THROW(appendentry(end, "[A]", "d", std::string(510, 'x')), TextTooLong);
  EXPECT_EQ(lines(), "[A]\na=1\nb=2\nc=\n[B]\n");
  Line* endofc = nullptr;
  appendentry(endofc, "[C]", "a", "1");
  appendentry(endofc, "[C]", "b", "2");
  EXPECT_EQ(lines(), "[A]\na=1\nb=2\nc=\n[B]\n[C]\na=1\nb=2\n");
}

TEST_F(Entries, GetvalueTellsMissingFromEmpty) {
  given("[A]\na=1=2\nb=\nc\n");
  Text value{"old"};
  EXPECT_TRUE(getvalue("[A]", "a", value));
  EXPECT_EQ(value, "1=2");
  EXPECT_TRUE(getvalue("[A]", "b", value));
  EXPECT_EQ(value, "");
  value.set("old");
  EXPECT_TRUE(getvalue("[A]", "c", value));
  EXPECT_EQ(value, "");
  value.set("old");
  EXPECT_FALSE(getvalue("[A]", "d", value));
  EXPECT_EQ(value, "");
}

TEST_F(Entries, PutentrySetsOrAdds) {
  given("[A]\na=1\na=2\n[B]\n");
  putentry("[A]", "a", "9");
  putentry("[A]", "b", "3");
  EXPECT_EQ(lines(), "[A]\na=9\na=2\nb=3\n[B]\n");
}

TEST_F(Entries, EditentrySetsOnlyWhatIsThere) {
  given("[A]\na\n");
  editentry("[A]", "a", "1");
  editentry("[A]", "b", "1");
  editentry("[B]", "a", "1");
  EXPECT_EQ(lines(), "[A]\na=1\n");
}

TEST_F(Entries, KeepentryAddsOnlyWhatIsMissing) {
  given("[A]\na=1\n");
  keepentry("[A]", "a", "2");
  keepentry("[A]", "b", "2");
  keepentry("[B]", "a", "2");
  EXPECT_EQ(lines(), "[A]\na=1\nb=2\n[B]\na=2\n");
}

TEST_F(Entries, DelentryDeletesTheFirstOrTheHeader) {
  given("[A]\na=1\na=2\n[B]\nb=1\n");
  delentry("[A]", "a");
  EXPECT_EQ(lines(), "[A]\na=2\n[B]\nb=1\n");
  delentry("[A]", "none");
  delentry("[B]");
  delentry("[C]");
  EXPECT_EQ(lines(), "[A]\na=2\nb=1\n");
}

TEST_F(Entries, SaveentryAddsALineAtTheEndOfTheSection) {
  given("[A]\n; note\n[B]\n");
  saveentry("[A]", "k", "1");
  EXPECT_EQ(lines(), "[A]\n; note\nk=1\n[B]\n");
  given("[A]\n[B]\nb=1\n");
  saveentry("[A]", "k", "1");
  EXPECT_EQ(lines(), "[A]\nk=1\n[B]\nb=1\n");
  given("[A]\na=1\n");
  saveentry("[C]", "k", "1");
  EXPECT_EQ(lines(), "[A]\na=1\n[C]\nk=1\n");
  given("[A]\nk=1\n");
  saveentry("[A]", "k", "2");
  EXPECT_EQ(lines(), "[A]\nk=1\nk=2\n");
  EXPECT_EQ(getvalue("[A]", "k"), "1");
}

TEST_F(Entries, SaveentryOnAnEmptyStoreIsStartAndLast) {
  saveentry("[C]", "k", "1");
  EXPECT_EQ(textof(start), "[C]");
  EXPECT_EQ(textof(last), "k=1");
  EXPECT_EQ(lines(), "[C]\nk=1\n");
}

TEST_F(Entries, AnEntryHasAtMost511Characters) {
  given("[A]\nk=1\n");
  EXPECT_THROW(saveentry("[A]", "k", std::string(510, 'x')), TextTooLong);
  EXPECT_THROW(editentry("[A]", "k", std::string(510, 'x')), TextTooLong);
  EXPECT_EQ(lines(), "[A]\nk=1\n");
  editentry("[A]", "k", std::string(509, 'x'));
  EXPECT_EQ(lines(), "[A]\nk=" + std::string(509, 'x') + "\n");
}

TEST_F(Entries, NewsectionNeverLooksForAnExistingOne) {
  given("[A]\na=1\n");
  EXPECT_EQ(newsection("[A]"), last);
  EXPECT_EQ(lines(), "[A]\na=1\n[A]\n");
}

TEST_F(Entries, EditsectionRenamesInPlace) {
  given("[A]\na=1\n[B]\n[A]\n");
  const Text* const text = editsection("[A]", "[New]");
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(*text, "[New]");
  EXPECT_EQ(lines(), "[New]\na=1\n[B]\n[A]\n");
  EXPECT_EQ(editsection("[C]", "[D]"), nullptr);
  EXPECT_THROW(editsection("[B]", std::string(512, 'x')), TextTooLong);
}

TEST_F(Entries, DelsectionDeletesDuplicatesTooButStopsAtAnEmptyKey) {
  given("[A]\na=1\n=x\nb=2\n[B]\n");
  delsection("[A]");
  EXPECT_EQ(lines(), "=x\nb=2\n[B]\n");
  given("[A]\na=1\nb\na=2\n[B]\nb=1\n");
  delsection("[A]");
  EXPECT_EQ(lines(), "[B]\nb=1\n");
  delsection("[A]");
  delsection("[B]");
  EXPECT_EQ(lines(), "");
}

TEST_F(Entries, GettagnameTellsWhereItStopped) {
  Text key;
  EXPECT_EQ(gettagname("a=b=c", key), '=');
  EXPECT_EQ(key, "a");
  EXPECT_EQ(gettagname("a b", key), '\0');
  EXPECT_EQ(key, "a b");
  EXPECT_EQ(gettagname("=x", key), '=');
  EXPECT_EQ(key, "");
}

TEST_F(Entries, GetnexttagnameIsTheFirstKeyOfTheSection) {
  given("[A]\nk=1\nl=2\n[Empty]\n[B]\n=x\n[End]\n");
  Text key;
  getnexttagname("[A]", key);
  EXPECT_EQ(key, "k");
  for (const char* section : {"[Empty]", "[B]", "[End]", "[Missing]"}) {
    key.set("old");
    getnexttagname(section, key);
    EXPECT_EQ(key, "") << section;
  }
}

TEST_F(Entries, RenametagKeepsTheValue) {
  given("[A]\na=1=2\nb\n");
  renametag("[A]", "a", "longer");
  renametag("[A]", "b", "c");
  renametag("[A]", "missing", "d");
  EXPECT_EQ(lines(), "[A]\nlonger=1=2\nc=\n");
}

}  // namespace

}  // namespace tolvane::test
