// Opening the tables of archived book years beside the current ones, and the alternative chart
// of accounts (ALTACF with its references ALTREF). Each member answers whether every table it
// names is open afterwards.

#include "company/archive_tables.hpp"
#include "company/shared_company.hpp"
#include "facade/wrapped_member.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;

constexpr std::string_view kAlternativeTables[] = {"ALTACF", "ALTREF"};

company::ArchiveTables Archives() {
    return company::ArchiveTables(company::SharedSocParamColClassApi(), FnrkRoutines::Tables());
}

bool OpenAlternativeTables() {
    tables::AdsClass& tables = FnrkRoutines::Tables();
    bool open = true;
    for (const std::string_view alias : kAlternativeTables) {
        if (!tables.IsAlias(alias)) open = tables.FileOpen(alias) == engine::AE_SUCCESS && open;
    }
    return open;
}

bool OpenArchivedAlternativeTables(std::int16_t bookYear) {
    company::ArchiveTables archives = Archives();
    bool open = true;
    for (const std::string_view alias : kAlternativeTables)
        open = archives.OpenArchived(alias, bookYear) && open;
    return open;
}

}  // namespace

void AddArchiveTableMembers(MemberTable& table) {
    // The book year whose archive to open (0: the current one).
    AddWrapped(table, "OpenFileArchiveACT", {kInteger},
               [](R&, CallArgs& a) { return Archives().OpenArchived("ACT", a.Integer(1)); });
    AddWrapped(table, "OpenFileArchiveACF", {kInteger},
               [](R&, CallArgs& a) { return Archives().OpenArchived("ACF", a.Integer(1)); });
    AddWrapped(table, "OpenFilesALT", {}, [](R&, CallArgs&) { return OpenAlternativeTables(); });
    AddWrapped(table, "OpenFilesArchiveALT", {kInteger},
               [](R&, CallArgs& a) { return OpenArchivedAlternativeTables(a.Integer(1)); });
}

}  // namespace fnrk::facade
