#pragma once

// SocParamColClassApi: the reader of a company's parameter table "PARAM", whose rows are keys
// ("ID", upper case, 25 characters) with a value split over "VALUE" and "VALUEEXT".

#include <string>
#include <string_view>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::company {

class SocParamColClassApi {
  public:
    // `tables` must outlive this object; the parameter table is read through it.
    explicit SocParamColClassApi(tables::AdsClass& tables) : tables_(tables) {}

    // The full value of a key: "VALUE" then "VALUEEXT", each without trailing blanks. Empty when
    // "PARAM" is not open or the key is missing. The caller's current alias is kept.
    std::string GetParamValue(std::string_view key);

  private:
    tables::AdsClass& tables_;
};

}  // namespace fnrk::company
