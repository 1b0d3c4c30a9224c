#include "facade/ubl_member_args.hpp"

namespace fnrk::facade {

using namespace args;

std::vector<ArgSpec> PartyArgs() {
    return {kString, kString, kString,           kString,           kString,
            kString, kString, Optional(kString), Optional(kString), Optional(kString)};
}

std::vector<ArgSpec> LineArgs() {
    return {kString, kString, kDouble, kDouble, kDouble, kDouble,          kString,
            kDouble, kDouble, kString, kString, kDouble, Optional(kString)};
}

einvoice::UblParty PartyFrom(const CallArgs& a, std::size_t i) {
    einvoice::UblParty party;
    party.vatNumber = a.String(i);
    party.name = a.String(i + 1);
    party.street = a.String(i + 2);
    party.city = a.String(i + 3);
    party.postalCode = a.String(i + 4);
    party.countryCode = a.String(i + 5);
    party.countryName = a.String(i + 6);
    party.telephone = a.String(i + 7);
    party.fax = a.String(i + 8);
    party.email = a.String(i + 9);
    return party;
}

einvoice::UblLine LineFrom(const CallArgs& a, std::size_t i) {
    einvoice::UblLine line;
    line.lineNumber = a.String(i);
    line.note = a.String(i + 1);
    line.quantity = a.Double(i + 2);
    line.lineAmount = a.Double(i + 3);
    line.discountPercent = a.Double(i + 4);
    line.discountAmount = a.Double(i + 5);
    line.vatCode = a.String(i + 6);
    line.vatRate = a.Double(i + 7);
    line.taxAmount = a.Double(i + 8);
    line.exemptionReason = a.String(i + 9);
    line.itemCode = a.String(i + 10);
    line.unitPrice = a.Double(i + 11);
    line.itemName = a.String(i + 12);
    return line;
}

}  // namespace fnrk::facade
