#pragma once

// SodaMappings: the SODA code mapping MSODA (payroll code -> account) and analytical mapping
// MSODAANA (payroll code -> analytical section). Each method is the façade member of the same
// name after "SODA" (SODAGetMapping -> GetMapping).

#include <string>
#include <string_view>

#include "intake/company_facts.hpp"

namespace fnrk::intake {

class SodaMappings {
  public:
    explicit SodaMappings(CompanyFacts& company) : company_(company) {}

    // True when the table exists (it is created when missing).
    bool CreateMapping();
    bool CreateMappingANA();
    // The destination of `Source`; "" when it has none.
    std::string GetMapping(std::string_view Source);
    std::string GetMappingANA(std::string_view Source);
    // Sets the destination of `Source` (blank: no destination); one record per Source.
    [[nodiscard]] bool UpdateMapping(std::string_view Source, std::string_view destination);
    [[nodiscard]] bool UpdateMappingANA(std::string_view Source, std::string_view destination);
    // Deletes the whole analytical mapping: its sections belong to the analytical type that
    // was chosen, and mean nothing under another.
    [[nodiscard]] bool DeleteAnaSection();

  private:
    CompanyFacts& company_;
};

}  // namespace fnrk::intake
