#pragma once

// CaroMappings: the card-statement tables of a company: CCD (card -> account), CCDKEY
// (merchant -> account or supplier) and CCDDETAIL (the card transaction behind a booked document
// line). Each method is the façade member of the same name after "CARO"
// (CAROGetKeyMapping -> GetKeyMapping).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "intake/ccd_detail_info.hpp"
#include "intake/company_facts.hpp"

namespace fnrk::intake {

// `typeDest` of the CCDKEY members: the destination is an account or a supplier.
inline constexpr std::int16_t kDestinationAccount = 1;
inline constexpr std::int16_t kDestinationSupplier = 2;

class CaroMappings {
  public:
    explicit CaroMappings(CompanyFacts& company) : company_(company) {}

    // --- CCD. Create answers whether the table exists afterwards; Open opens it shared and puts
    // ReadMapping at its first card (in card order).
    bool CreateMapping();
    bool CreateIndexMapping();
    bool OpenMapping();
    bool FlushAndUnlockMapping();
    bool PackCloseMapping();
    std::string GetMapping(std::string_view cardId);
    [[nodiscard]] bool UpdateMapping(std::string_view cardId, std::string_view cardNumber,
                                     std::string_view GlAccount);
    // The current card, then moves to the next; false past the last one.
    bool ReadMapping(std::string& cardId, std::string& cardNumber, std::string& GlAccount,
                     std::int32_t& recno);
    bool DeleteMapping(std::string_view cardId);

    // --- CCDKEY, alike.
    bool CreateKeyMapping();
    bool CreateIndexKeyMapping();
    bool OpenKeyMapping();
    bool FlushAndUnlockKeyMapping();
    bool PackCloseKeyMapping();
    // False when the merchant has no mapping.
    bool GetKeyMapping(std::string_view merchant, std::int16_t& typeDest, std::string& destination);
    // `typeDest` kDestinationAccount or kDestinationSupplier; another value is refused.
    [[nodiscard]] bool UpdateKeyMapping(std::string_view merchant, std::int16_t typeDest,
                                        std::string_view destination);
    bool ReadKeyMapping(std::string& merchant, std::int16_t& typeDest, std::string& destination,
                        std::int32_t& recno);
    bool DeleteKeyMapping(std::string_view merchant);

    // --- CCDDETAIL, keyed by document line. The layouts are those of ccd_detail_info.hpp;
    // both answer "" for a line without details.
    std::string GetInfoCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                                 std::string_view docOrder, std::string_view Bookyear,
                                 std::string_view Period);
    std::string GetPrettyInfoCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                                       std::string_view docOrder, std::string_view Bookyear,
                                       std::string_view Period);
    // The booking comment of the line's card transaction (ccd_detail_info.hpp); "" for a line
    // without details.
    std::string GetComment(std::string_view DbkCode, std::string_view DocNumber,
                           std::string_view docOrder, std::string_view Bookyear,
                           std::string_view Period);
    // Adds or rewrites the line's details (creating the table when missing); false, with
    // nothing written, for a `paraminfo` that does not read.
    [[nodiscard]] bool UpdateCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                                       std::string_view docOrder, std::string_view Bookyear,
                                       std::string_view Period, std::string_view paraminfo);
    bool DeleteCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                         std::string_view docOrder, std::string_view Bookyear,
                         std::string_view Period);
    bool PackCloseCCDDETAIL();
    bool CreateIndexCCDDETAIL();

  private:
    // The details of a document line; nothing when it has none.
    std::optional<DetailValues> LineDetails(std::string_view DbkCode, std::string_view DocNumber,
                                            std::string_view docOrder, std::string_view Bookyear,
                                            std::string_view Period);

    CompanyFacts& company_;
};

}  // namespace fnrk::intake
