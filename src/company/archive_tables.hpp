#pragma once

// The tables of an archived book year. Its folder (".PATHARCH" of the book year) holds the
// company's files as they were when the year was archived, named with the archive name
// (".NAMEARCH") as their short name, or with the company's own short name when the archive has
// none. A table opens shared under "ARCH" followed by its standard alias ("ARCHACT",
// "ARCHACF", "ARCHALTACF", "ARCHALTREF"), so that it stands beside the current year's table.

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::company {

class SocParamColClassApi;

class ArchiveTables {
  public:
    // Both must outlive this object.
    ArchiveTables(SocParamColClassApi& params, tables::AdsClass& tables)
        : params_(params), tables_(tables) {}

    // The alias under which the archived copy of standard table `alias` opens.
    static std::string ArchiveAlias(std::string_view alias);
    // The archived copy of standard table `alias` for book year `bookYear` (0: the current
    // one); empty when the book year is not archived or `alias` is not a standard table.
    std::string ArchivedTablePath(std::string_view alias, std::int16_t bookYear);
    // Opens it (an archived copy of another year open under the alias is closed first). False
    // when there is none or it does not open (the table access shows why).
    bool OpenArchived(std::string_view alias, std::int16_t bookYear);

  private:
    // The archived files' folder and short name; empty when the book year is not archived.
    std::string ArchivePrefix(std::int16_t bookYear);

    SocParamColClassApi& params_;
    tables::AdsClass& tables_;
};

}  // namespace fnrk::company
