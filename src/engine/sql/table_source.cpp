#include "engine/sql/table_source.hpp"

#include <filesystem>

#include "platform/text.hpp"

namespace fnrk::engine::sql {

Status TableSource::OpenTable(const std::string& path, bool readOnly, Handle& table,
                              std::string& message) {
    table = 0;
    const std::uint32_t options = ADS_SHARED | (readOnly ? ADS_READONLY : 0U);
    Status status = AE_DUPLICATE_ALIAS;
    // Private aliases keep the statement's tables apart from the caller's open ones.
    for (int attempt = 0; attempt < 100 && status == AE_DUPLICATE_ALIAS; ++attempt) {
        const std::string alias = "SQLTABLE" + std::to_string(++nextAlias);
        status = engine.OpenTable(connection, path, alias, ADS_CDX, ADS_ANSI, lockType, checkRights,
                                  options, table);
    }
    if (status != AE_SUCCESS) {
        Status code = status;
        IgnoreStatus(engine.GetLastError(code, message));  // empty when there is none
        message = "cannot open table " + path + ": " + message;
        return status;
    }
    bool encrypted = false;
    if (engine.IsTableEncrypted(table, encrypted) != AE_SUCCESS || !encrypted) return AE_SUCCESS;
    readsEncrypted = true;
    const std::string name = platform::UpperCase(std::filesystem::path(path).stem().string());
    const auto own = passwords.find(name);
    status = engine.EnableEncryption(table, own != passwords.end() ? own->second : password);
    if (status != AE_SUCCESS) {
        message = "wrong or missing password for encrypted table " + name;
        IgnoreStatus(engine.CloseTable(table));  // the refusal is the answer
        table = 0;
    }
    return status;
}

}  // namespace fnrk::engine::sql
