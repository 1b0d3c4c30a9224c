#pragma once

// CompanyFacts: everything the intake needs to know about the current company, in one place:
// its parameters (read and written), its periods and book years, its short name and data folder.
// The parameter table is reached only through here.

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::tables {
class AdsClass;
}
namespace fnrk::company {
class SocParamColClassApi;
}

namespace fnrk::intake {

class CompanyFacts {
  public:
    // Both must outlive this object; the parameter table "PARAM" must be open for the
    // parameters to be found.
    CompanyFacts(tables::AdsClass& tables, company::SocParamColClassApi& params)
        : tables_(tables), params_(params) {}

    tables::AdsClass& Tables() const { return tables_; }

    // The full value of a parameter; empty when absent.
    std::string GetParamValue(std::string_view key);
    // Writes a parameter, adding its row when missing. The value is split over VALUE and
    // VALUEEXT. False when the parameter table is not open or the write fails.
    bool SaveParamValue(std::string_view key, std::string_view value);

    // The company keeps monthly periods (else quarterly ones).
    bool IsSocMensuel();
    std::int16_t BookYearCount();
    // The period-date text of book year `bookYear`: one "DDMMYYYY" start date per period, the
    // opening period first.
    std::string PerDate(std::int16_t bookYear);
    // The company uses bank statements (CODA).
    bool IsCoda();

    // The short name that prefixes the company's table files ("SOC1").
    std::string ShortName() const;
    // The company's data folder, without a trailing separator.
    std::string pathName() const;
    // The company's table file `table` + `extension`: the data folder, the short name, "_".
    std::string TableFile(std::string_view table, std::string_view extension) const;

  private:
    tables::AdsClass& tables_;
    company::SocParamColClassApi& params_;
};

}  // namespace fnrk::intake
