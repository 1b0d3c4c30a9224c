#pragma once

// clsAnalytical: analytical answers over the company's tables, for the calling applications.
//
// - GetFormatforSectionQuantity: the entry format of the codes of an analytical section, the
//   sections numbered from 1 in the order of the analytical zone table ("ZONANA"): its mask
//   when it has one, else one "X" per character of the section's length; "" for a section that
//   does not exist.
// - IsAccountAnalytical: the general-ledger account takes analytical entries (its "ISANALYT"
//   in "ACF").

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::company {

class SocParamColClassApi;

class clsAnalytical {
  public:
    // `params` must outlive this object.
    explicit clsAnalytical(SocParamColClassApi& params) : params_(params) {}

    std::string GetFormatforSectionQuantity(std::int16_t section);
    bool IsAccountAnalytical(std::string_view account);

  private:
    SocParamColClassApi& params_;
};

}  // namespace fnrk::company
