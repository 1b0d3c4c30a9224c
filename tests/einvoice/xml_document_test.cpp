#include "einvoice/xml_document.hpp"

#include <gtest/gtest.h>

#include "support/temp_dir.hpp"
#include "xml_probe.hpp"

namespace fnrk::einvoice {
namespace {

const XmlDocument::Namespaces kNamespaces = {
    {"cac", "urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2"},
    {"cbc", "urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2"},
    {"", "urn:oasis:names:specification:ubl:schema:xsd:Invoice-2"}};

TEST(XmlDocumentTest, AnyTextGivesAWellFormedFile) {
    testing::TempDir dir;
    XmlDocument document("Invoice", kNamespaces);
    XmlElement party = document.Root().Add("cac:Party");
    party.Add("cbc:Name", "  Dupont & Fils <SA> \"l'Été\" \x01\x0B\xE9\xC3 Ölbaum\t ");
    party.Add("cbc:Note").Attribute("code", "a&b<\"c\"\x02");
    party.AddIfNotEmpty("cbc:Empty", "   ");
    ASSERT_TRUE(document.Save(dir / "out.xml"));

    const std::string bytes = testing::ReadFileBytes(dir / "out.xml");
    EXPECT_EQ(bytes.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", 0), 0u);
    EXPECT_NE(bytes.find("<cbc:Name>"), std::string::npos);

    testing::XmlProbe probe(dir / "out.xml");
    ASSERT_TRUE(probe.parsed());
    EXPECT_EQ(probe.Text("/doc:Invoice/cac:Party/cbc:Name"),
              "Dupont & Fils <SA> \"l'Été\"  Ölbaum\t");
    EXPECT_EQ(probe.Text("/doc:Invoice/cac:Party/cbc:Note/@code"), "a&b<\"c\"");
    EXPECT_EQ(probe.Count("//cbc:Empty"), 0);
    EXPECT_EQ(probe.RootNamespaces(),
              (std::vector<std::string>{
                  "cac=urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2",
                  "cbc=urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2",
                  "=urn:oasis:names:specification:ubl:schema:xsd:Invoice-2"}));
}

TEST(XmlDocumentTest, Base64ContentAndFailedSave) {
    testing::TempDir dir;
    XmlDocument document("Invoice", kNamespaces);
    document.Root().Add("cbc:Object").SetBase64(std::string("%PDF-\x00\xFF", 7));
    EXPECT_FALSE(document.Save(dir / "missing" / "out.xml"));
    ASSERT_TRUE(document.Save(dir / "out.xml"));
    testing::XmlProbe probe(dir / "out.xml");
    EXPECT_EQ(probe.Text("//cbc:Object"), "JVBERi0A/w==");
}

TEST(XmlDocumentTest, SafeTextKeepsOnlyXmlCharacters) {
    EXPECT_EQ(XmlSafeText(std::string("a\0b\r\n\tc", 7)), "ab\r\n\tc");
    EXPECT_EQ(XmlSafeText("\xEF\xBF\xBF"
                          "x\xF0\x9F\x98\x80"),
              "x\xF0\x9F\x98\x80");
    EXPECT_EQ(XmlSafeText("caf\xE9"), "caf");
}

}  // namespace
}  // namespace fnrk::einvoice
