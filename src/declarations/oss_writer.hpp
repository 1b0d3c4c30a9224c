#pragma once

// The quarterly OSS declaration for the Belgian administration, written section by section into
// a document the caller holds: the header, then for each member state its block followed by its
// rows and corrections, or the nil marker for a quarter without supplies. Each call appends to
// the last element of its parent's kind, so the calls must come in document order
// (DeclarationError otherwise).

#include "declarations/declaration_document.hpp"
#include "declarations/declaration_parts.hpp"
#include "declarations/representative_source.hpp"

namespace fnrk::declarations {

// The consignment root, then the declaration with its trader and period; no representative.
void OssXmlHeader(DeclarationDocument& document, const DeclarationHeader& header);

// The same with the representative block, read from the representative's record.
void OssXmlHeaderCheckRepresentative(DeclarationDocument& document, const DeclarationHeader& header,
                                     const RepresentativeSource& representative);

void OssXmlHeaderInfo(DeclarationDocument& document, const MemberStateInfo& info);

// Marks the last declaration as a nil declaration.
void OssXmlNil(DeclarationDocument& document);

void OssXmlRow(DeclarationDocument& document, const OssRow& row);

void OssXmlRowCorrection(DeclarationDocument& document, const OssCorrection& correction);

}  // namespace fnrk::declarations
