#pragma once

// The layouts of the Luxembourg periodic VAT return: 11 is the earlier form (165 boxes), 12 the
// later one (170 boxes).

#include <cstdint>
#include <string>
#include <string_view>

#include "declarations/declaration_tva_case.hpp"

namespace fnrk::declarations {

inline constexpr std::int16_t kLuxLayoutEarlier = 11;
inline constexpr std::int16_t kLuxLayoutLater = 12;

// XML node type of a box by its `CaseType`: "Choice", "TextField" or "NumericField".
std::string NodeTypeName(std::uint8_t caseType);

// Replaces the dictionary's content by the boxes of the layout, in drawing order. Any layout code
// other than 11 or 12 leaves it empty.
void LuxXmlCaseInitialise(VatBoxDictionary& boxes, std::int16_t layout);

// Creates a box from its eighteen values and adds it under its number; the node names come from
// the case type and the mandatory flag from the list of mandatory boxes.
void AddVatBox(VatBoxDictionary& boxes, std::uint8_t page, std::uint8_t tabOrder,
               std::string number, std::string valueModified, std::string valueOriginal,
               std::uint8_t caseType, std::string total, bool fieldVisible,
               std::uint8_t addEmptyLineAfter, bool showHeaderBefore, bool calcVisible,
               std::int16_t calcHeight, std::int16_t calcWidth, bool corrVisible,
               std::int16_t corrHeight, std::int16_t corrWidth, std::uint8_t columnNumber,
               std::string label);

}  // namespace fnrk::declarations
