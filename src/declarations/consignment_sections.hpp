#pragma once

// The sections the OSS and MOSS consignments share, written under each document's own element
// names.

#include <array>
#include <string_view>

#include "declarations/declaration_document.hpp"
#include "declarations/declaration_parts.hpp"
#include "declarations/representative_source.hpp"

namespace fnrk::declarations {

// Element and attribute names of one kind of consignment, prefixes included.
struct ConsignmentNames {
    std::string_view root;                       // the consignment element
    std::array<NamespaceBinding, 3> namespaces;  // declared on it, in this order
    bool standalone;                             // the XML declaration says standalone='yes'

    std::string_view declarationCount;     // root attribute with the number of declarations
    std::string_view representative;       // the representative block
    std::string_view representativeField;  // prefix of the block's children ("ns1:" or "")
    std::string_view declaration;          // one declaration
    std::string_view traderId;             // its trader
    std::string_view traderVatNumber;      // the trader's VAT number
    std::string_view period;               // the declared period
    std::string_view periodYear;           // ... its year
    std::string_view periodQuarter;        // ... its quarter
    std::string_view memberStateInfo;      // one member state of consumption
    std::string_view memberState;          // its country
    std::string_view establishment;        // a row's fixed establishment
    std::string_view establishmentVat;     // its VAT number
    std::string_view establishmentVatUri;  // namespace of the latter, if the root lacks it
};

// The root with its namespaces and attributes, the representative block when one is given, then
// the declaration with its trader and period. DeclarationError when the document has a root.
void WriteConsignmentHeader(DeclarationDocument& document, const ConsignmentNames& names,
                            const DeclarationHeader& header,
                            const RepresentativeSource* representative);

// A member-state block appended to the last declaration.
void AppendMemberStateInfo(const DeclarationDocument& document, const ConsignmentNames& names,
                           const MemberStateInfo& info);

// The fixed establishment of a row, when the row has one to declare.
void AppendFixedEstablishment(xmlNode* row, const ConsignmentNames& names,
                              const FixedEstablishment& establishment);

// An amount element: the amount with "." as separator and its "currency" attribute.
void AppendAmount(xmlNode* parent, std::string_view name, std::string_view amount,
                  std::string_view currency);

}  // namespace fnrk::declarations
