#include "declarations/oss_writer.hpp"

#include "declarations/consignment_sections.hpp"
#include "declarations/declaration_namespaces.hpp"
#include "declarations/declaration_text.hpp"

namespace fnrk::declarations {
namespace {

constexpr ConsignmentNames kOssNames = {
    .root = "ns0:OSSConsignment",
    .namespaces = {{{"ns0", kOssDeclarationNamespace},
                    {"ns1", kInputCommonNamespace},
                    {"ns2", kOssCommonNamespace}}},
    .standalone = false,
    .declarationCount = "OSSDeclarationNbr",
    .representative = "ns0:Representative",
    .representativeField = "ns1:",
    .declaration = "ns0:OSSDeclaration",
    .traderId = "ns0:Trader_ID",
    .traderVatNumber = "ns2:VATNumber",
    .period = "ns0:Period",
    .periodYear = "ns2:Year",
    .periodQuarter = "ns2:Quarter",
    .memberStateInfo = "ns0:OSSDeclarationInfo",
    .memberState = "ns2:MemberStateOfConsumption",
    .establishment = "ns2:FixedEstablishment",
    // The root does not bind "ns3"; the schema has this element in its OSS common namespace.
    .establishmentVat = "ns3:VATIdentificationNumber",
    .establishmentVatUri = kOssCommonNamespace,
};

}  // namespace

void OssXmlHeader(DeclarationDocument& document, const DeclarationHeader& header) {
    WriteConsignmentHeader(document, kOssNames, header, nullptr);
}

void OssXmlHeaderCheckRepresentative(DeclarationDocument& document, const DeclarationHeader& header,
                                     const RepresentativeSource& representative) {
    WriteConsignmentHeader(document, kOssNames, header, &representative);
}

void OssXmlHeaderInfo(DeclarationDocument& document, const MemberStateInfo& info) {
    AppendMemberStateInfo(document, kOssNames, info);
}

void OssXmlNil(DeclarationDocument& document) {
    xmlNode* declaration = document.LastElement(kOssNames.declaration, "the nil marker");
    AppendTextElement(declaration, "ns0:IsNihil", "true");
}

void OssXmlRow(DeclarationDocument& document, const OssRow& row) {
    xmlNode* info = document.LastElement(kOssNames.memberStateInfo, "a row");
    xmlNode* element = AppendElement(info, "ns2:OSSDeclarationRows");
    SetAttribute(element, "SequenceNumber", row.sequenceNumber);
    AppendTextElement(element, "ns2:SupplyType", row.goods ? "GOODS" : "SERVICES");
    AppendFixedEstablishment(element, kOssNames, row.establishment);
    xmlNode* rate = AppendTextElement(element, "ns2:VatRateType", AmountText(row.rate));
    SetAttribute(rate, "type", row.rateType);
    AppendAmount(element, "ns2:VatAmount", row.vatAmount, row.currency);
    AppendAmount(element, "ns2:TaxableAmount", row.taxableAmount, row.currency);
}

void OssXmlRowCorrection(DeclarationDocument& document, const OssCorrection& correction) {
    xmlNode* info = document.LastElement(kOssNames.memberStateInfo, "a correction");
    xmlNode* element = AppendElement(info, "ns2:CorrectionsInfo");
    xmlNode* period = AppendElement(element, "ns2:Period");
    AppendTextElement(period, "ns2:Year", correction.year);
    AppendTextElement(period, "ns2:Quarter", correction.quarter);
    AppendAmount(element, "ns2:TotalVATAmountCorrection", correction.vatAmount,
                 correction.currency);
}

}  // namespace fnrk::declarations
