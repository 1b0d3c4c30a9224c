#pragma once

// The quarterly MOSS declaration (telecommunication, broadcasting and electronic services) for
// the Belgian administration, written section by section into a document the caller holds:
// the header, then for each member state its block, its rows and its footer. Each call appends
// to the last element of its parent's kind (DeclarationError when there is none).

#include "declarations/declaration_document.hpp"
#include "declarations/declaration_parts.hpp"
#include "declarations/representative_source.hpp"

namespace fnrk::declarations {

void MossXmlHeader(DeclarationDocument& document, const DeclarationHeader& header);

// The same with the representative block, read from the representative's record.
void MossXmlHeaderCheckRepresentative(DeclarationDocument& document,
                                      const DeclarationHeader& header,
                                      const RepresentativeSource& representative);

void MossXmlHeaderInfo(DeclarationDocument& document, const MemberStateInfo& info);

void MossXmlRow(DeclarationDocument& document, const MossRow& row);

// The global amounts closing the last member-state block.
void MossXmlFooterInfo(DeclarationDocument& document, const MossTotals& totals);

}  // namespace fnrk::declarations
