// The operations this engine does not offer yet (see engine.hpp): index orders and optimized
// filters, encryption, SQL statements and data dictionaries.

#include "engine/engine.hpp"

namespace fnrk::engine {

Status Engine::CreateIndex(Handle /*object*/, std::string_view /*fileName*/,
                           std::string_view /*tag*/, std::string_view /*expression*/,
                           std::string_view /*condition*/, std::string_view /*whileCondition*/,
                           std::uint32_t /*options*/, Handle& /*index*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::OpenIndex(Handle /*table*/, std::string_view /*fileName*/,
                         std::vector<Handle>& /*indexes*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::CloseIndex(Handle /*index*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetIndexHandle(Handle /*table*/, std::string_view /*orderName*/, Handle& /*index*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetIndexHandleByOrder(Handle /*table*/, std::uint16_t /*order*/, Handle& /*index*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetIndexOrderByHandle(Handle /*index*/, std::uint16_t& /*order*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetAllIndexes(Handle /*table*/, std::vector<Handle>& /*indexes*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetIndexName(Handle /*index*/, std::string& /*name*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetIndexExpr(Handle /*index*/, std::string& /*expression*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetIndexCondition(Handle /*index*/, std::string& /*condition*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetKeyLength(Handle /*index*/, std::uint16_t& /*length*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::IsIndexDescending(Handle /*index*/, bool& /*descending*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::IsIndexCompound(Handle /*index*/, bool& /*compound*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::IsIndexUnique(Handle /*index*/, bool& /*unique*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetKeyCount(Handle /*index*/, std::uint16_t /*filterOption*/,
                           std::uint32_t& /*count*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::ExtractKey(Handle /*index*/, std::string& /*key*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::Seek(Handle /*index*/, std::string_view /*key*/, std::uint16_t /*dataType*/,
                    std::uint16_t /*seekType*/, bool& /*found*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::SeekLast(Handle /*index*/, std::string_view /*key*/, std::uint16_t /*dataType*/,
                        bool& /*found*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::SetScope(Handle /*index*/, std::uint16_t /*scopeOption*/, std::string_view /*scope*/,
                        std::uint16_t /*dataType*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetScope(Handle /*index*/, std::uint16_t /*scopeOption*/, std::string& /*scope*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::ClearScope(Handle /*index*/, std::uint16_t /*scopeOption*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetRelKeyPos(Handle /*index*/, double& /*position*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::SetRelKeyPos(Handle /*index*/, double /*position*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::Reindex(Handle /*object*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::EnableEncryption(Handle /*table*/, std::string_view /*password*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::EncryptTable(Handle /*table*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DecryptTable(Handle /*table*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::IsTableEncrypted(Handle /*table*/, bool& /*encrypted*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::CreateSQLStatement(Handle /*connection*/, Handle& /*statement*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::PrepareSQL(Handle /*statement*/, std::string_view /*sql*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::ExecuteSQL(Handle /*statement*/, Handle& /*cursor*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::ExecuteSQLDirect(Handle /*statement*/, std::string_view /*sql*/,
                                Handle& /*cursor*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetSQLStatementHandle(Handle /*cursor*/, Handle& /*statement*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::ClearSQLParams(Handle /*statement*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::CloseSQLStatement(Handle /*statement*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtSetTableRights(Handle /*statement*/, std::uint16_t /*checkRights*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtSetTableReadOnly(Handle /*statement*/, std::uint16_t /*readOnly*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtSetTableLockType(Handle /*statement*/, std::uint16_t /*lockType*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtSetTableCharType(Handle /*statement*/, std::uint16_t /*charType*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtSetTableType(Handle /*statement*/, std::uint16_t /*tableType*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtEnableEncryption(Handle /*statement*/, std::string_view /*password*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::StmtSetTablePassword(Handle /*statement*/, std::string_view /*tableName*/,
                                    std::string_view /*password*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDCreate(std::string_view /*dictionaryPath*/, std::uint16_t /*encrypt*/,
                        std::string_view /*description*/, Handle& /*dictionary*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDAddTable(Handle /*dictionary*/, std::string_view /*tableName*/,
                          std::string_view /*tablePath*/, std::uint16_t /*tableType*/,
                          std::uint16_t /*charType*/, std::string_view /*indexFiles*/,
                          std::string_view /*comments*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDAddView(Handle /*dictionary*/, std::string_view /*name*/,
                         std::string_view /*comments*/, std::string_view /*sql*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDCreateUser(Handle /*dictionary*/, std::string_view /*groupName*/,
                            std::string_view /*userName*/, std::string_view /*password*/,
                            std::string_view /*description*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDSetDatabaseProperty(Handle /*dictionary*/, std::uint16_t /*propertyId*/,
                                     std::string_view /*value*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDSetUserProperty(Handle /*dictionary*/, std::string_view /*userName*/,
                                 std::uint16_t /*propertyId*/, std::string_view /*value*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::SetAOF(Handle /*table*/, std::string_view /*expression*/,
                      std::uint16_t /*resolveOptions*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetAOF(Handle /*table*/, std::string& /*expression*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::GetAOFOptLevel(Handle /*table*/, std::uint16_t& /*level*/,
                              std::string& /*nonOptimizedPart*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::ClearAOF(Handle /*table*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

}  // namespace fnrk::engine
