#include "standard/databases.h"

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Databases : public StoreTest {};

TEST_F(Databases, AuditIsAddedWithItsSection) {
  given("[A]\n");
  EXPECT_TRUE(check_audit(false));
  EXPECT_EQ(lines(), "[A]\n[Datasets]\nDataSet_1=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, AuditBehindAGapIsNotSeen) {
  given("[Datasets]\nDataSet_1=VELMSYS,velmsys,,0,P,1,0\nDataSet_3=VELMAUDIT,velmaudit,,0,P,0,1\n");
  EXPECT_TRUE(check_audit(false));
  EXPECT_EQ(lines(),
            "[Datasets]\nDataSet_1=VELMSYS,velmsys,,0,P,1,0\nDataSet_3=VELMAUDIT,velmaudit,,0,P,0,1\n"
            "DataSet_2=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, AuditKeepsItsDirectory) {
  given("[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=VELMAUDIT,/db/audit/,,0,P,1,0\n");
  EXPECT_TRUE(check_audit(false));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=VELMAUDIT,/db/audit/,,0,P,0,1\n");
}

TEST_F(Databases, AuditIsPaddedToSevenFields) {
  given("[Datasets]\nDataSet_1=a\nDataSet_2=VELMAUDIT,x\n");
  EXPECT_TRUE(check_audit(false));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=a\nDataSet_2=VELMAUDIT,x,,,,0,1\n");
  EXPECT_FALSE(check_audit(false));
}

TEST_F(Databases, NamesAreCaseSensitiveWholeFields) {
  given("[Datasets]\nDataSet_1=velmaudit\nDataSet_2=VELMAUDITX\n");
  EXPECT_TRUE(check_audit(false));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=velmaudit\nDataSet_2=VELMAUDITX\nDataSet_3=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, AuditResetIsTheStandardValue) {
  given("[Datasets]\nDataSet_1=VELMAUDIT,/db/audit/,,0,P,0,1\n");
  EXPECT_TRUE(check_audit(true));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=VELMAUDIT,velmaudit,,0,P,0,1\n");
  EXPECT_FALSE(check_audit(true));
  given("");
  EXPECT_TRUE(check_audit(true));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=VELMAUDIT,velmaudit,,0,P,0,1\n");
}

TEST_F(Databases, LibraryFieldsAreMadeToConformOnce) {
  given("[Datasets]\nDataSet_1=a\nDataSet_2=b\nDataSet_3=c\nDataSet_4=d\nDataSet_5=VELMLIB,lib,remote,0,R,0,0\n");
  EXPECT_TRUE(check_velmlib(false));
  EXPECT_EQ(lines(),
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
  given("[Datasets]\n[B]\n");
  EXPECT_TRUE(check_velmlib(false));
  EXPECT_EQ(lines(), "[Datasets]\nDataSet_1=VELMLIB,velmlib,,0,P,0,1\n[B]\n");
}

TEST_F(Databases, DocumentationGetsItsNamespace) {
  given("[Datasets]\nDataSet_1=DOCBOOK,docbook,,0,P,0,0\n[Namespaces]\nNsp_1=USER,USER\n");
  EXPECT_TRUE(check_docbook(false));
  EXPECT_EQ(lines(),
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
  given("[Datasets]\nDataSet_1=SAMPLES,/s/,,0,P,0,0\n[Namespaces]\nNsp_1=SAMPLES,SAMPLES\n");
  EXPECT_TRUE(check_samples(true));
  EXPECT_EQ(lines(),
            "[Datasets]\nDataSet_1=SAMPLES,samples,,0,P,0,0\n"
            "[Namespaces]\nNsp_1=SAMPLES,SAMPLES,VELMSYS,SAMPLES,VELMSYS,VELMLIB,VELMTEMP\n");
  EXPECT_FALSE(check_samples(true));
}

TEST_F(Databases, ResetTellsOfTheDatabaseWhenTheNamespaceIsStandard) {
  const std::string_view nsp = "[Namespaces]\nNsp_1=DOCBOOK,DOCBOOK,VELMSYS,DOCBOOK,VELMSYS,VELMLIB,VELMTEMP\n";
  given(std::string("[Datasets]\nDataSet_1=DOCBOOK,/d/\n").append(nsp));
  EXPECT_TRUE(check_docbook(true));
  EXPECT_EQ(lines(), std::string("[Datasets]\nDataSet_1=DOCBOOK,docbook,,0,P,0,0\n").append(nsp));
}

}  // namespace

}  // namespace tolvane::test
