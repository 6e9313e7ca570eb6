#include "standard/databases.h"

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Databases : public StoreTest {};

/// The lines after a check that changes them.
std::string changed(bool (*check)(bool reset), bool reset, std::string_view before) {
  given(before);
  EXPECT_TRUE(check(reset)) << before;
  return lines();
}

TEST_F(Databases, AuditIsAddedWithItsSection) {
  EXPECT_EQ(changed(check_audit, false, "[A]\n"), "[A]\n[Datasets]\nDataSet_1=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, AuditBehindAGapIsNotSeen) {
  EXPECT_EQ(changed(check_audit, false,
                    "[Datasets]\nDataSet_1=VELMSYS,velmsys,,0,P,1,0\nDataSet_3=VELMAUDIT,velmaudit,,0,P,0,1\n"),
            "[Datasets]\nDataSet_1=VELMSYS,velmsys,,0,P,1,0\nDataSet_3=VELMAUDIT,velmaudit,,0,P,0,1\n"
            "DataSet_2=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, AuditKeepsItsDirectory) {
  EXPECT_EQ(changed(check_audit, false,
                    "[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=VELMAUDIT,/db/audit/,,0,P,1,0\n"),
            "[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=VELMAUDIT,/db/audit/,,0,P,0,1\n");
}

TEST_F(Databases, AuditIsPaddedToSevenFields) {
  EXPECT_EQ(changed(check_audit, false, "[Datasets]\nDataSet_1=a\nDataSet_2=VELMAUDIT,x\n"),
            "[Datasets]\nDataSet_1=a\nDataSet_2=VELMAUDIT,x,,,,0,1\n");
  EXPECT_FALSE(check_audit(false));
}

TEST_F(Databases, NamesAreCaseSensitiveWholeFields) {
  EXPECT_EQ(changed(check_audit, false, "[Datasets]\nDataSet_1=velmaudit\nDataSet_2=VELMAUDITX\n"),
            "[Datasets]\nDataSet_1=velmaudit\nDataSet_2=VELMAUDITX\nDataSet_3=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, AuditResetIsTheStandardValue) {
  EXPECT_EQ(changed(check_audit, true, "[Datasets]\nDataSet_1=VELMAUDIT,/db/audit/,,0,P,0,1\n"),
            "[Datasets]\nDataSet_1=VELMAUDIT,velmaudit,,0,P,0,1\n");
  EXPECT_FALSE(check_audit(true));
  EXPECT_EQ(changed(check_audit, true, ""), "[Datasets]\nDataSet_1=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, LibraryFieldsAreMadeToConformOnce) {
  EXPECT_EQ(
      changed(check_velmlib, false,
              "[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=d\nDataSet_5=VELMLIB,lib,remote,0,R,0,0\n"),
      "[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=d\nDataSet_5=VELMLIB,lib,,0,P,0,1\n");
  EXPECT_FALSE(check_velmlib(false));
}

TEST_F(Databases, LibraryKeepsItsOtherFields) {
  given("[Datasets]\nDataSet_1=VELMLIB,/lib/,,7,P,5,1,more\n");
  EXPECT_FALSE(check_velmlib(false));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=VELMLIB,/lib/,,7,P,5,1,more\n");
  EXPECT_TRUE(check_velmlib(true));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=VELMLIB,velmlib,,0,P,0,1\n");
}

TEST_F(Databases, LibraryIsAdded) {
  EXPECT_EQ(changed(check_velmlib, false, "[Datasets]\n[B]\n"),
            "[Datasets]\nDataSet_1=VELMLIB,velmlib,,0,P,0,1\n[B]\n");
}

TEST_F(Databases, DocumentationGetsItsNamespace) {
  EXPECT_EQ(
      changed(check_docbook, false, "[Datasets]\nDataSet_1=DOCBOOK,docbook,,0,P,0,0\n[Namespaces]\nNsp_1=USER,USER\n"),
      "[Datasets]\nDataSet_1=DOCBOOK,docbook,,0,P,0,0\n[Namespaces]\nNsp_1=USER,USER\n"
      "Nsp_2=DOCBOOK,DOCBOOK,VELMSYS,DOCBOOK,VELMSYS,VELMLIB,VELMTEMP\n");
  EXPECT_FALSE(check_docbook(false));
}

TEST_F(Databases, DocumentationAndSamplesAreLeftAlone) {
  const std::string_view differing =
      "[Datasets]\nDataSet_1=DOCBOOK,/doc/,,1\nDataSet_2=SAMPLES\n[Namespaces]\nNsp_1=SAMPLES\nNsp_2=DOCBOOK\n";
  given(differing);
  EXPECT_FALSE(check_docbook(false));
  EXPECT_FALSE(check_samples(false));
  EXPECT_EQ(lines(), differing);
}

TEST_F(Databases, NoNamespaceIsAddedWithoutItsDatabase) {
  given("[Namespaces]\nNsp_1=USER\n");
  EXPECT_FALSE(check_samples(false));
  EXPECT_FALSE(check_samples(true));
  EXPECT_FALSE(check_docbook(true));
  EXPECT_EQ(lines(), "[Namespaces]\nNsp_1=USER\n");
}

TEST_F(Databases, SamplesResetIsTheStandardValueOfBoth) {
  EXPECT_EQ(
      changed(check_samples, true, "[Datasets]\nDataSet_1=SAMPLES,/s/,,0,P,0,0\n[Namespaces]\nNsp_1=SAMPLES,SAMPLES\n"),
      "[Datasets]\nDataSet_1=SAMPLES,samples,,0,P,0,0\n"
      "[Namespaces]\nNsp_1=SAMPLES,SAMPLES,VELMSYS,SAMPLES,VELMSYS,VELMLIB,VELMTEMP\n");
  EXPECT_FALSE(check_samples(true));
}

TEST_F(Databases, ResetTellsOfTheDatabaseWhenTheNamespaceIsStandard) {
  const std::string_view nsp = "[Namespaces]\nNsp_1=DOCBOOK,DOCBOOK,VELMSYS,DOCBOOK,VELMSYS,VELMLIB,VELMTEMP\n";
  EXPECT_EQ(changed(check_docbook, true, std::string("[Datasets]\nDataSet_1=DOCBOOK,/d/\n").append(nsp)),
            std::string("[Datasets]\nDataSet_1=DOCBOOK,docbook,,0,P,0,0\n").append(nsp));
}

}  // namespace

}  // namespace tolvane::test
