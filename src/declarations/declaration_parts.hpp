#pragma once

// What the caller hands to the OSS and MOSS writers, section by section. Numbers and amounts
// arrive as text, as the application's VAT module has them ("1234,56" is fine).

#include <string>

namespace fnrk::declarations {

struct DeclarationHeader {
    std::string declarationCount;  // declarations in the consignment
    std::string groupVatNumber;    // only for a VAT group; empty otherwise
    std::string sequenceNumber;
    std::string traderCountry;
    std::string traderVatNumber;
    std::string year;
    std::string quarter;
};

// One member state of consumption.
struct MemberStateInfo {
    std::string sequenceNumber;
    std::string country;
};

// The establishment a supply was made from; empty when made from the trader's own seat.
struct FixedEstablishment {
    std::string country;
    std::string vatNumber;
};

struct OssRow {
    std::string sequenceNumber;
    bool goods = false;  // "GOODS", else "SERVICES"
    FixedEstablishment establishment;
    std::string rateType;  // "type" of the rate, as the caller names it ("STANDARD", ...)
    std::string rate;
    std::string vatAmount;
    std::string taxableAmount;
    std::string currency;
};

// A correction of the VAT of an earlier period for one member state.
struct OssCorrection {
    std::string year;
    std::string quarter;
    std::string vatAmount;
    std::string currency;
};

struct MossRow {
    std::string sequenceNumber;
    FixedEstablishment establishment;
    std::string rateType;
    std::string rate;
    std::string vatAmount;
    std::string taxableAmount;
    std::string grossAmount;
    std::string currency;
};

// The global amounts closing a MOSS member-state block.
struct MossTotals {
    std::string taxableAmount;
    std::string vatAmount;
    std::string grossAmount;
    std::string currency;
};

}  // namespace fnrk::declarations
