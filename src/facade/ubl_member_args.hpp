#pragma once

// How the invoice members of the member table lay out a party and an invoice line in their
// arguments, shared by the three families.
//
// A party: VAT number, name, street, city, postal code, country code, country name, then the
// optional telephone, fax and e-mail (kPartyArgs).
// A line: line number, note, quantity, line amount, discount percent, discount amount, VAT code,
// VAT rate, tax amount, exemption reason, item code, unit price, then the optional item name
// (kLineArgs).

#include <vector>

#include "einvoice/ubl_records.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

std::vector<ArgSpec> PartyArgs();
std::vector<ArgSpec> LineArgs();
inline constexpr std::size_t kPartyArgCount = 10;
inline constexpr std::size_t kLineArgCount = 13;

einvoice::UblParty PartyFrom(const CallArgs& a, std::size_t first);
einvoice::UblLine LineFrom(const CallArgs& a, std::size_t first);

// `head` followed by `tail`, for building argument lists.
std::vector<ArgSpec> Concat(std::vector<ArgSpec> head, const std::vector<ArgSpec>& tail);

}  // namespace fnrk::facade
