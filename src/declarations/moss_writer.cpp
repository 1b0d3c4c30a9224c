#include "declarations/moss_writer.hpp"

#include "declarations/consignment_sections.hpp"
#include "declarations/declaration_namespaces.hpp"
#include "declarations/declaration_text.hpp"

namespace fnrk::declarations {
namespace {

constexpr ConsignmentNames kMossNames = {
    .root = "ns2:MossConsignments",
    .namespaces = {{{"", kInputCommonNamespace},
                    {"ns2", kMossConsignmentNamespace},
                    {"ns3", kMossCommonNamespace}}},
    .standalone = true,
    .declarationCount = "MossDeclarationNbr",
    .representative = "ns2:Representative",
    .representativeField = "",
    .declaration = "ns2:MossDeclaration",
    .traderId = "ns2:Trader_ID",
    .traderVatNumber = "ns3:VATNumber",
    .period = "ns2:Period",
    .periodYear = "ns3:Year",
    .periodQuarter = "ns3:Quarter",
    .memberStateInfo = "ns2:MossDeclarationInfo",
    .memberState = "ns2:MemberStateOfConsumption",
    .establishment = "ns2:FixedEstablishment",
    .establishmentVat = "ns3:VATIdentificationNumber",
    .establishmentVatUri = kMossCommonNamespace,
};

}  // namespace

void MossXmlHeader(DeclarationDocument& document, const DeclarationHeader& header) {
    WriteConsignmentHeader(document, kMossNames, header, nullptr);
}

void MossXmlHeaderCheckRepresentative(DeclarationDocument& document,
                                      const DeclarationHeader& header,
                                      const RepresentativeSource& representative) {
    WriteConsignmentHeader(document, kMossNames, header, &representative);
}

void MossXmlHeaderInfo(DeclarationDocument& document, const MemberStateInfo& info) {
    AppendMemberStateInfo(document, kMossNames, info);
}

void MossXmlRow(DeclarationDocument& document, const MossRow& row) {
    xmlNode* info = document.LastElement(kMossNames.memberStateInfo, "a row");
    xmlNode* element = AppendElement(info, "ns2:MossDeclarationRows");
    SetAttribute(element, "SequenceNumber", row.sequenceNumber);
    AppendFixedEstablishment(element, kMossNames, row.establishment);
    xmlNode* rate = AppendTextElement(element, "ns2:VatRateType", AmountText(row.rate));
    SetAttribute(rate, "type", row.rateType);
    AppendAmount(element, "ns2:VatAmount", row.vatAmount, row.currency);
    AppendAmount(element, "ns2:TaxableAmount", row.taxableAmount, row.currency);
    AppendAmount(element, "ns2:GrossAmount", row.grossAmount, row.currency);
}

void MossXmlFooterInfo(DeclarationDocument& document, const MossTotals& totals) {
    xmlNode* info = document.LastElement(kMossNames.memberStateInfo, "the global amounts");
    AppendAmount(info, "ns2:GlobalTaxableAmount", totals.taxableAmount, totals.currency);
    AppendAmount(info, "ns2:GlobalVatAmount", totals.vatAmount, totals.currency);
    AppendAmount(info, "ns2:GlobalGrossAmount", totals.grossAmount, totals.currency);
}

}  // namespace fnrk::declarations
