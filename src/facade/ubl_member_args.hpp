#pragma once

// How the invoice members of the member table lay out a party and an invoice line in their
// arguments, shared by the three families.
//
// A party: VAT number, name, street, city, postal code, country code, country name, then the
// optional telephone, fax and e-mail (PartyArgs).
// A line: line number, note, quantity, line amount, discount percent, discount amount, VAT code,
// VAT rate, tax amount, exemption reason, item code, unit price, then the optional item name
// (LineArgs).

#include <vector>

#include "einvoice/ubl_records.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

std::vector<ArgSpec> PartyArgs();
std::vector<ArgSpec> LineArgs();

einvoice::UblParty PartyFrom(const CallArgs& a, std::size_t first);
einvoice::UblLine LineFrom(const CallArgs& a, std::size_t first);

}  // namespace fnrk::facade
