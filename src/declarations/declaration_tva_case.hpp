#pragma once

// One numbered box of the Luxembourg periodic VAT return, as the calling application draws,
// fills and exports it.

#include <cstdint>
#include <string>

#include "declarations/ordered_dictionary.hpp"

namespace fnrk::declarations {

// Kinds of box (`CaseType`).
inline constexpr std::uint8_t kCaseNumeric = 1;
inline constexpr std::uint8_t kCaseChoiceAlternative = 3;
inline constexpr std::uint8_t kCaseText = 6;
inline constexpr std::uint8_t kCaseTotal = 7;
inline constexpr std::uint8_t kCaseChoice = 8;

struct DeclarationTvaCase {
    std::string Number;
    std::string ValueModified;
    std::string ValueOriginal;
    std::string XmlNodeNameModified;
    std::string XmlNodeNameOfficial;
    bool MandatoryOriginal = false;
    bool MandatoryModified = false;
    std::uint8_t CaseType = kCaseNumeric;
    std::string Total;
    std::uint8_t Page = 0;
    std::uint8_t TabOrder = 0;
    std::uint8_t AddEmptyLineAfter = 0;
    bool FieldVisible = false;
    bool ShowHeaderBefore = false;
    bool CalcVisible = false;
    std::int16_t CalcHeight = 0;
    std::int16_t CalcWidth = 0;
    bool CorrVisible = false;
    std::int16_t CorrHeight = 0;
    std::int16_t CorrWidth = 0;
    std::uint8_t ColumnNumber = 1;
    std::string Label;
};

// The boxes of one return keyed by `Number`, in drawing order.
using VatBoxDictionary = OrderedDictionary<DeclarationTvaCase>;

}  // namespace fnrk::declarations
