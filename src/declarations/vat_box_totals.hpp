#pragma once

// Computing the total boxes of a filled VAT return from their formulas.

#include <string>

#include "declarations/declaration_tva_case.hpp"
#include "declarations/ordered_dictionary.hpp"
#include "declarations/vat_box_formula.hpp"

namespace fnrk::declarations {

// The number a box holds: the corrected value when there is one, else the value from the books;
// empty counts as zero, "," is read as the decimal separator too. FormulaError names the box when
// the text is not a number.
double EnteredValue(const DeclarationTvaCase& box);

// The value of every box that has a formula, in drawing order. Totals that use other totals are
// computed after them; a formula that reaches its own box through others, or names a box that
// is not on the form, is a FormulaError.
OrderedDictionary<double> ComputeTotals(const VatBoxDictionary& boxes);

}  // namespace fnrk::declarations
