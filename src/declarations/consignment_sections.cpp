#include "declarations/consignment_sections.hpp"

#include <string>

#include "declarations/declaration_text.hpp"
#include "platform/text.hpp"

namespace fnrk::declarations {
namespace {

std::string Child(std::string_view prefix, std::string_view local) {
    return std::string(prefix) + std::string(local);
}

void WriteRepresentative(xmlNode* root, const ConsignmentNames& names,
                         const RepresentativeSource& source) {
    using platform::Trim;
    using platform::UpperCase;
    const std::string_view p = names.representativeField;
    const std::string country = CountryCodeText(source.FieldText(kRepresentativeCountryField));

    xmlNode* block = AppendElement(root, names.representative);
    xmlNode* id = AppendTextElement(block, Child(p, "RepresentativeID"),
                                    Trim(source.FieldText(kRepresentativeVatField)));
    SetAttribute(id, "identificationType", "NVAT");
    SetAttribute(id, "issuedBy", country);
    AppendTextElement(block, Child(p, "Name"),
                      UpperCase(Trim(source.FieldText(kRepresentativeNameField))));
    AppendTextElement(block, Child(p, "Street"),
                      StreetText(source.FieldText(kRepresentativeStreetField)));
    AppendTextElement(block, Child(p, "PostCode"),
                      PostCodeText(source.FieldText(kRepresentativePostCodeField)));
    AppendTextElement(block, Child(p, "City"),
                      UpperCase(Trim(source.FieldText(kRepresentativeCityField))));
    AppendTextElement(block, Child(p, "CountryCode"), country);
    AppendTextElement(block, Child(p, "EmailAddress"),
                      Trim(source.FieldText(kRepresentativeEmailField)));
    // The record has no telephone number; the element stays, empty.
    AppendElement(block, Child(p, "Phone"));
}

}  // namespace

void WriteConsignmentHeader(DeclarationDocument& document, const ConsignmentNames& names,
                            const DeclarationHeader& header,
                            const RepresentativeSource* representative) {
    xmlNode* root = document.CreateRoot(names.root, names.namespaces);
    if (names.standalone) document.doc()->standalone = 1;
    SetAttribute(root, names.declarationCount, header.declarationCount);
    if (!platform::Trim(header.groupVatNumber).empty())
        SetAttribute(root, "XMLGroupVATIdentifier", header.groupVatNumber);
    if (representative != nullptr) WriteRepresentative(root, names, *representative);

    xmlNode* declaration = AppendElement(root, names.declaration);
    SetAttribute(declaration, "SequenceNumber", header.sequenceNumber);
    xmlNode* trader = AppendElement(declaration, names.traderId);
    xmlNode* vat = AppendTextElement(trader, names.traderVatNumber, header.traderVatNumber);
    SetAttribute(vat, "issuedBy", CountryCodeText(header.traderCountry));
    xmlNode* period = AppendElement(declaration, names.period);
    AppendTextElement(period, names.periodYear, header.year);
    AppendTextElement(period, names.periodQuarter, header.quarter);
}

void AppendMemberStateInfo(const DeclarationDocument& document, const ConsignmentNames& names,
                           const MemberStateInfo& info) {
    xmlNode* declaration = document.LastElement(names.declaration, "a member state");
    xmlNode* block = AppendElement(declaration, names.memberStateInfo);
    SetAttribute(block, "SequenceNumber", info.sequenceNumber);
    AppendTextElement(block, names.memberState, CountryCodeText(info.country));
}

void AppendFixedEstablishment(xmlNode* row, const ConsignmentNames& names,
                              const FixedEstablishment& establishment) {
    // A supply is declared from a fixed establishment only when that establishment has a VAT
    // number and lies outside Belgium: a Belgian one is the trader's own seat.
    const std::string country = CountryCodeText(establishment.country);
    const std::string vatNumber = platform::Trim(establishment.vatNumber);
    if (vatNumber.empty() || country == "BE") return;
    xmlNode* block = AppendElement(row, names.establishment);
    xmlNode* vat =
        AppendTextElement(block, names.establishmentVat, vatNumber, names.establishmentVatUri);
    SetAttribute(vat, "issuedBy", country);
}

void AppendAmount(xmlNode* parent, std::string_view name, std::string_view amount,
                  std::string_view currency) {
    xmlNode* element = AppendTextElement(parent, name, AmountText(amount));
    SetAttribute(element, "currency", currency);
}

}  // namespace fnrk::declarations
