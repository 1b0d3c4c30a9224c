// The VAT declaration members: an OSS and a MOSS consignment built section by section in a
// document the caller holds between calls, and the boxes of the Luxembourg return.

#include <gtest/gtest.h>

#include "facade_fixture.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

class DeclarationMembersTest : public FacadeTest {
  protected:
    // Calls a section member with the registry and the held document first; the document the
    // member leaves there is kept for the next call.
    void Section(const std::string& member, std::vector<Variant> values) {
        values.insert(values.begin(), {RegistryOf({}), document});
        MemberTable::Instance().Invoke(routines, member, MemberKind::Method, values);
        document = values[1];
    }
    std::string Xml() const { return document.ToObject()->GetProperty("xml").ToString(); }

    Variant document;
};

TEST_F(DeclarationMembersTest, AnOssConsignmentIsBuiltInTheCallersDocument) {
    Section("OssXmlHeader", {Variant("1"), Variant(""), Variant("1"), Variant("BE"),
                             Variant("0477472701"), Variant("2024"), Variant("2")});
    ASSERT_TRUE(document.IsObject()) << "the first header makes the document";
    const std::shared_ptr<VariantObject> held = document.ToObject();
    Section("OssXmlHeaderInfo", {Variant("1"), Variant("fr")});
    Section("OssXmlRow", {Variant("1"), Variant(true), Variant("DE"), Variant("DE123456789"),
                          Variant("STANDARD"), Variant("20,00"), Variant("246,91"),
                          Variant("1234,56"), Variant("EUR")});
    Section("OssXmlRowCorrection",
            {Variant("2024"), Variant("1"), Variant("-12,50"), Variant("EUR")});
    EXPECT_EQ(document.ToObject(), held) << "the same document all along";
    const std::string xml = Xml();
    EXPECT_NE(xml.find("<ns0:OSSConsignment"), std::string::npos) << xml;
    EXPECT_NE(xml.find(">FR</ns2:MemberStateOfConsumption>"), std::string::npos) << xml;
    EXPECT_NE(xml.find(">1234.56</ns2:TaxableAmount>"), std::string::npos) << xml;
    EXPECT_NE(xml.find(">-12.50</ns2:TotalVATAmountCorrection>"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("Representative"), std::string::npos);

    // A second header in the same document is refused by the writer.
    EXPECT_THROW(Section("OssXmlHeader", {Variant("1"), Variant(""), Variant("1"), Variant("BE"),
                                          Variant("0477472701"), Variant("2024"), Variant("2")}),
                 FacadeError);
    // Something else than a document in the document's place is a type mismatch.
    document = Variant("<xml/>");
    try {
        Section("OssXmlNil", {});
        FAIL();
    } catch (const FacadeError& error) {
        EXPECT_EQ(error.number(), kErrObjectRequired);
    }
}

TEST_F(DeclarationMembersTest, TheRepresentativeIsTheCurrentRecordOfTheTableNamed) {
    CreateTable("REPRES",
                "NTVA,C,12,0;Name,C,30,0;Adress,C,40,0;PostCode,C,10,0;Locality,C,30,0;"
                "Country,C,20,0;Email,C,40,0",
                {},
                {{{"NTVA", std::string("0123456789")},
                  {"Name", std::string("Fiduciaire")},
                  {"Adress", std::string("Rue Haute 12~bte 3")},
                  {"PostCode", std::string("BE-1000")},
                  {"Locality", std::string("Bruxelles")},
                  {"Country", std::string("BE")},
                  {"Email", std::string("info@fiduciaire.be")}}});
    Section("MossXmlHeaderCheckRepresentative",
            {Variant("1"), Variant(""), Variant("1"), Variant("BE"), Variant("0477472701"),
             Variant("2014"), Variant("4"), Variant("REPRES")});
    Section("MossXmlHeaderInfo", {Variant("1"), Variant("NL")});
    Section("MossXmlRow",
            {Variant("1"), Variant(""), Variant(""), Variant("STANDARD"), Variant("21"),
             Variant("21,00"), Variant("100,00"), Variant("121,00"), Variant("EUR")});
    Section("MossXmlFooterInfo",
            {Variant("100,00"), Variant("21,00"), Variant("121,00"), Variant("EUR")});
    const std::string xml = Xml();
    EXPECT_NE(xml.find("standalone=\"yes\""), std::string::npos) << xml;
    EXPECT_NE(xml.find("<Street>RUE HAUTE 12,BTE 3</Street>"), std::string::npos) << xml;
    EXPECT_NE(xml.find(">121.00</ns2:GlobalGrossAmount>"), std::string::npos) << xml;
}

TEST_F(DeclarationMembersTest, TheLuxembourgBoxesComeBackKeyedByNumber) {
    std::vector<Variant> args = {RegistryOf({}), Variant(), Variant("12")};
    MemberTable::Instance().Invoke(routines, "LuxXmlCaseInitialise", MemberKind::Method, args);
    const auto* boxes = dynamic_cast<const VariantCollection*>(args[1].ToObject().get());
    ASSERT_NE(boxes, nullptr);
    EXPECT_EQ(boxes->Count(), 170u);
    EXPECT_TRUE(boxes->HasKey("042"));
    const std::shared_ptr<VariantObject> first = boxes->Item(1).ToObject();
    EXPECT_EQ(first->PropertyNames().size(), 22u);
    EXPECT_EQ(first->GetProperty("ColumnNumber").Type(), VariantType::Integer);
    args = {RegistryOf({}), Variant(), Variant(11)};
    MemberTable::Instance().Invoke(routines, "LuxXmlCaseInitialise", MemberKind::Method, args);
    EXPECT_EQ(args[1].ToObject()->GetProperty("Count"), Variant(165));
    args = {RegistryOf({}), Variant(), Variant(13)};
    MemberTable::Instance().Invoke(routines, "LuxXmlCaseInitialise", MemberKind::Method, args);
    EXPECT_EQ(args[1].ToObject()->GetProperty("Count"), Variant(0));
}

}  // namespace
}  // namespace fnrk::facade
