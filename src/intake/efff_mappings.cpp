#include "intake/efff_mappings.hpp"

#include "intake/mapping_table.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::intake {

namespace {

constexpr MappingQuery kSeekType{"SEEKTYPE", "TYPE"};
// A worker's own mapping: type and national number.
constexpr MappingQuery kSeekInss{"SEEKINSS", "DETAIL"};
constexpr MappingQuery kSeekLine{"SEEKLINE", "JNL"};
// The workers in national-number order.
constexpr MappingQuery kSeekWorker{"SEEKWORKER", "INSS"};
constexpr std::size_t kTypeKeyWidth = 41;  // LINETYPE + TYPE
constexpr std::size_t kInssWidth = 12;

std::string LineType(std::string_view imputType) {
    return platform::LeftChars(platform::Trim(imputType), 1);
}

std::string ItemType(std::string_view imputType) {
    const std::string trimmed = platform::Trim(imputType);
    return trimmed.substr(LineType(trimmed).size());
}

std::string TypeKey(std::string_view imputType) {
    return LiveKey(imputType, kTypeKeyWidth);
}

std::string WorkerKey(std::string_view imputType, std::string_view inss) {
    return TypeKey(imputType) + platform::PadRight(platform::Trim(inss), kInssWidth);
}

}  // namespace

bool EfffMappings::CreateMapping() {
    return MappingTable(company_, MefffsocLayout()).Create();
}

std::string EfffMappings::GetMapping(std::string_view Source) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, MefffsocLayout());
    return table.Seek(kSeekType, TypeKey(Source)) ? platform::Trim(table.Text("DEST"))
                                                  : std::string();
}

bool EfffMappings::WriteWorker(std::string_view imputType, std::string_view inss,
                               const FieldValues& values) {
    FieldValues writes{{"LINETYPE", LineType(imputType)},
                       {"TYPE", ItemType(imputType)},
                       {"INSS", platform::Trim(inss)}};
    writes.insert(writes.end(), values.begin(), values.end());
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, MefffsocLayout())
        .Write(kSeekInss, WorkerKey(imputType, inss), writes);
}

bool EfffMappings::UpdateMapping(std::string_view Source, std::string_view destination) {
    return UpdateMappingGLAccount(Source, "", destination);
}

bool EfffMappings::UpdateMappingGLAccount(std::string_view imputType, std::string_view inss,
                                          std::string_view destination) {
    return WriteWorker(imputType, inss, FieldValues{{"DEST", platform::Trim(destination)}});
}

bool EfffMappings::UpdateMappingDetailByFile(std::string_view imputType, std::string_view inss,
                                             std::string_view workerName,
                                             std::string_view workerFirstName) {
    return WriteWorker(imputType, inss,
                       FieldValues{{"NAME", platform::Trim(workerName)},
                                   {"FIRSTNAME", platform::Trim(workerFirstName)}});
}

bool EfffMappings::UpdateMappingByUser(std::string_view imputType, std::string_view inss,
                                       std::string_view destination, std::string_view anaRef) {
    return WriteWorker(
        imputType, inss,
        FieldValues{{"DEST", platform::Trim(destination)}, {"ANAREF", platform::Trim(anaRef)}});
}

bool EfffMappings::GetMappingInfo(std::string_view imputType, std::string_view inss,
                                  std::string& destination, std::string& anaRef) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, MefffsocLayout());
    if (!table.Seek(kSeekInss, WorkerKey(imputType, inss)) &&
        !table.Seek(kSeekInss, WorkerKey(imputType, "")))
        return false;
    destination = platform::Trim(table.Text("DEST"));
    anaRef = platform::Trim(table.Text("ANAREF"));
    return true;
}

bool EfffMappings::GetMappingIsGlobal(std::string_view imputType) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, MefffsocLayout());
    return table.Seek(kSeekType, TypeKey(imputType)) && platform::Trim(table.Text("INSS")).empty();
}

bool EfffMappings::GetINSS(std::string& inss, std::string& firstName, std::string& lastName) {
    const std::string after = platform::Trim(inss);
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, MefffsocLayout());
    if (!table.OpenInOrder(kSeekWorker)) return false;
    tables::AdsClass& tables = company_.Tables();
    // Soft: lands on the first key at or after the worker given.
    tables.seekKey(LiveKey(after, kInssWidth), true);
    std::string worker;
    std::string first;
    std::string last;
    for (; !tables.SelectionEof(); tables.moveNext()) {
        const std::string number = table.Text("INSS");
        if (number.empty() || number == after) continue;
        if (worker.empty()) worker = number;
        if (number != worker) break;
        if (first.empty() && last.empty()) {
            first = table.Text("FIRSTNAME");
            last = table.Text("NAME");
        }
    }
    if (worker.empty()) return false;
    inss = worker;
    firstName = first;
    lastName = last;
    return true;
}

bool EfffMappings::DeleteAnaSection() {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, MefffsocLayout()).ChangeAll({{"ANAREF", std::string()}});
}

bool EfffMappings::CreateACTEFFF() {
    return MappingTable(company_, ActcomLayout()).Create();
}

bool EfffMappings::GetACTEFFF(std::string_view DbkCode, std::string_view DocNumber,
                              std::string_view docOrder, std::string_view Bookyear,
                              std::string_view Period, std::string& typeEfff, std::string& inss,
                              std::string& payroll, std::string& payrollName) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, ActcomLayout());
    if (!table.Seek(kSeekLine, DocumentLineKey(DbkCode, Bookyear, Period, DocNumber, docOrder)))
        return false;
    typeEfff = table.Text("TYPEEFFF");
    inss = table.Text("INSS");
    payroll = table.Text("PAYROLL");
    payrollName = table.Text("PAYROLLN");
    return true;
}

bool EfffMappings::UpdateACTEFFF(std::string_view DbkCode, std::string_view DocNumber,
                                 std::string_view docOrder, std::string_view Bookyear,
                                 std::string_view Period, std::string_view typeEfff,
                                 std::string_view inss, std::string_view payroll,
                                 std::string_view payrollName) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, ActcomLayout())
        .Write(kSeekLine, DocumentLineKey(DbkCode, Bookyear, Period, DocNumber, docOrder),
               {{"DBKCODE", platform::Trim(DbkCode)},
                {"BOOKYEAR", platform::Trim(Bookyear)},
                {"PERIOD", platform::Trim(Period)},
                {"DOCNUMBER", platform::Trim(DocNumber)},
                {"DOCORDER", platform::Trim(docOrder)},
                {"TYPEEFFF", platform::Trim(typeEfff)},
                {"INSS", platform::Trim(inss)},
                {"PAYROLL", platform::Trim(payroll)},
                {"PAYROLLN", platform::Trim(payrollName)}});
}

bool EfffMappings::DeleteACTEFFF(std::string_view DbkCode, std::string_view DocNumber,
                                 std::string_view docOrder, std::string_view Bookyear,
                                 std::string_view Period) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, ActcomLayout())
        .Delete(kSeekLine, DocumentLineKey(DbkCode, Bookyear, Period, DocNumber, docOrder));
}

}  // namespace fnrk::intake
