#pragma once

// EfffMappings: the EFFF mapping MEFFFSOC (payroll item type, for all workers or for one, ->
// account and analytical reference) and ACTCOM (the payroll origin of a booked document line).
// Each method is the façade member of the same name after "EFFF" (EFFFGetMapping ->
// GetMapping).
//
// An `imputType` (and the `Source` of GetMapping / UpdateMapping) is the line type letter
// followed by the item type: its first character goes to LINETYPE, the rest to TYPE. A
// mapping for all workers has a blank INSS.
//
// MEFFFSOC is made from the template table "EFFFSOC.ORG" of the application's template folder
// (resources/ORG in the source tree). Its fields: LINETYPE C 1, TYPE C 40, INSS C 12, DEST C 10,
// NAME C 40 (worker's name), FIRSTNAME C 30 (worker's first name), ANAREF C 10 (analytical
// reference).

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "intake/company_facts.hpp"
#include "tables/field_values.hpp"

namespace fnrk::intake {

class EfffMappings {
  public:
    explicit EfffMappings(CompanyFacts& company) : company_(company) {}

    // True when MEFFFSOC exists (it is made from the template when missing).
    bool CreateMapping();
    // The account of the type's first mapping in type order; "" when none.
    std::string GetMapping(std::string_view Source);
    // Sets the account of the type's mapping for all workers.
    [[nodiscard]] bool UpdateMapping(std::string_view Source, std::string_view destination);
    // Sets the account of a worker's own mapping (all workers when `inss` is blank).
    [[nodiscard]] bool UpdateMappingGLAccount(std::string_view imputType, std::string_view inss,
                                              std::string_view destination);
    // Records the worker's names, as a payroll file gives them, on the worker's mapping.
    [[nodiscard]] bool UpdateMappingDetailByFile(std::string_view imputType, std::string_view inss,
                                                 std::string_view workerName,
                                                 std::string_view workerFirstName);
    // Sets account and analytical reference of the worker's mapping, as the user chose them.
    [[nodiscard]] bool UpdateMappingByUser(std::string_view imputType, std::string_view inss,
                                           std::string_view destination, std::string_view anaRef);
    // The worker's own mapping, else the type's mapping for all workers; false when neither.
    bool GetMappingInfo(std::string_view imputType, std::string_view inss, std::string& destination,
                        std::string& anaRef);
    // The first mapping of the type, in type order, holds for all workers.
    bool GetMappingIsGlobal(std::string_view imputType);
    // Walks the workers of the mapping in national-number order: the worker after the one whose
    // number `inss` holds ("" for the first), with the name and first name recorded for them (on
    // the first of their mappings that has any). False past the last worker, the arguments
    // then left as they were; mappings for all workers are not workers.
    bool GetINSS(std::string& inss, std::string& firstName, std::string& lastName);
    // Blanks every analytical reference: they belong to the analytical type that was chosen.
    [[nodiscard]] bool DeleteAnaSection();

    // --- ACTCOM, keyed by document line; the document number keys by its numeric value.
    bool CreateACTEFFF();
    bool GetACTEFFF(std::string_view DbkCode, std::string_view DocNumber, std::string_view docOrder,
                    std::string_view Bookyear, std::string_view Period, std::string& typeEfff,
                    std::string& inss, std::string& payroll, std::string& payrollName);
    [[nodiscard]] bool UpdateACTEFFF(std::string_view DbkCode, std::string_view DocNumber,
                                     std::string_view docOrder, std::string_view Bookyear,
                                     std::string_view Period, std::string_view typeEfff,
                                     std::string_view inss, std::string_view payroll,
                                     std::string_view payrollName);
    bool DeleteACTEFFF(std::string_view DbkCode, std::string_view DocNumber,
                       std::string_view docOrder, std::string_view Bookyear,
                       std::string_view Period);

  private:
    bool WriteWorker(std::string_view imputType, std::string_view inss,
                     const std::vector<std::pair<std::string_view, tables::FieldValue>>& values);

    CompanyFacts& company_;
};

}  // namespace fnrk::intake
