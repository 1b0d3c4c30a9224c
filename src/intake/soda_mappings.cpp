#include "intake/soda_mappings.hpp"

#include "intake/mapping_table.hpp"
#include "platform/text.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::intake {

namespace {

constexpr MappingQuery kSeekSource{"SEEKSOURCE", "SOURCE"};
constexpr MappingQuery kSeekSourceAna{"SEEKSOURCEA", "SOURCE"};
constexpr std::size_t kSourceWidth = 10;

std::string Destination(CompanyFacts& company, const MappingLayout& layout,
                        const MappingQuery& query, std::string_view Source) {
    const tables::CurrentAliasGuard caller(company.Tables());
    MappingTable table(company, layout);
    return table.Seek(query, LiveKey(Source, kSourceWidth)) ? platform::Trim(table.Text("DEST"))
                                                            : std::string();
}

bool SetDestination(CompanyFacts& company, const MappingLayout& layout, const MappingQuery& query,
                    std::string_view Source, std::string_view destination) {
    const tables::CurrentAliasGuard caller(company.Tables());
    return MappingTable(company, layout)
        .Write(query, LiveKey(Source, kSourceWidth),
               {{"SOURCE", platform::Trim(Source)}, {"DEST", platform::Trim(destination)}});
}

}  // namespace

bool SodaMappings::CreateMapping() {
    return MappingTable(company_, MsodaLayout()).Create();
}

bool SodaMappings::CreateMappingANA() {
    return MappingTable(company_, MsodaAnaLayout()).Create();
}

std::string SodaMappings::GetMapping(std::string_view Source) {
    return Destination(company_, MsodaLayout(), kSeekSource, Source);
}

std::string SodaMappings::GetMappingANA(std::string_view Source) {
    return Destination(company_, MsodaAnaLayout(), kSeekSourceAna, Source);
}

bool SodaMappings::UpdateMapping(std::string_view Source, std::string_view destination) {
    return SetDestination(company_, MsodaLayout(), kSeekSource, Source, destination);
}

bool SodaMappings::UpdateMappingANA(std::string_view Source, std::string_view destination) {
    return SetDestination(company_, MsodaAnaLayout(), kSeekSourceAna, Source, destination);
}

bool SodaMappings::DeleteAnaSection() {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, MsodaAnaLayout()).ChangeAll({});
}

}  // namespace fnrk::intake
