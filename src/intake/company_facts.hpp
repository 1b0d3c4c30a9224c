#pragma once

// CompanyFacts: everything the intake needs to know about the current company, in one place:
// its parameters (read and written through the company-parameter object), its periods and book
// years, and where its tables lie. The short name and data folder are those of the company's
// table files as the table access knows them (the session points it at the company).

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
    // Writes a parameter, adding its row when missing. False when the parameter table is not
    // open, the value does not fit, or the write fails.
    bool SaveParamValue(std::string_view key, std::string_view value);

    // The company keeps monthly periods (else quarterly ones), as its current book year (the
    // first when none is current) does.
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
