#include "engine/table_files.hpp"

#include "engine/crypt/encryption_mark.hpp"
#include "engine/cursor/engine_settings.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/dbf/table_check.hpp"
#include "engine/dbf/table_file.hpp"
#include "engine/order/table_indexes.hpp"
#include "engine/table_paths.hpp"
#include "platform/codepage.hpp"

namespace fnrk::engine {

namespace {

const cursor::EngineSettings& DefaultSettings() {
    static const cursor::EngineSettings settings;
    return settings;
}

// Problems of every tag of the structural index; false with the reason when the table or its
// index cannot be opened for the check.
bool CheckStructuralIndex(const std::string& path,
                          const std::shared_ptr<const crypt::FileCipher>& cipher,
                          std::vector<std::string>& problems, std::string& reason) {
    cursor::TableCursor table(DefaultSettings());
    if (table.Open(path, "T", {.exclusive = false, .readOnly = true}, reason) != AE_SUCCESS) {
        if (reason.empty()) reason = "cannot open " + path;
        return false;
    }
    if (table.file().locked() && cipher != nullptr) table.file().SetCipher(cipher);
    order::TableIndexes indexes(table, DefaultSettings().dates);
    if (indexes.OpenStructural(reason) != AE_SUCCESS) {
        if (reason.empty()) reason = "cannot open the index of the table";
        return false;
    }
    problems = indexes.Check();
    return true;
}

}  // namespace

Status ReadTableFileStructure(const std::string& name, TableFileStructure& structure,
                              std::string& message) {
    const std::string path = ResolveTablePath({}, name);
    cursor::TableCursor table(DefaultSettings());
    if (Status status = table.Open(path, "T", {.exclusive = false, .readOnly = true}, message);
        status != AE_SUCCESS) {
        if (message.empty()) message = "cannot open " + path;
        return status;
    }
    const auto& header = table.header();
    structure.version = header.version;
    structure.recordCount = header.recordCount;
    structure.recordLength = header.recordLength;
    structure.fields.clear();
    for (const auto& field : header.fields)
        structure.fields.push_back(
            {platform::Cp1252ToUtf8(field.name), field.type, field.length, field.decimals});
    return AE_SUCCESS;
}

std::vector<std::string> CheckTableFiles(const std::string& name, std::string_view password) {
    const std::string path = ResolveTablePath({}, name);
    std::shared_ptr<const crypt::FileCipher> cipher;
    if (!password.empty()) {
        dbf::TableFile table;
        std::string message;
        if (table.Open(path, {.exclusive = false, .readOnly = true}, message) == AE_SUCCESS &&
            table.encrypted()) {
            cipher = crypt::Unlock(crypt::ReadMark(table.header().reserved), password);
            if (cipher == nullptr) return {"the password is not the table's"};
        }
    }
    std::vector<std::string> problems = dbf::CheckTable(path, cipher);
    std::vector<std::string> tagProblems;
    std::string reason;
    if (!CheckStructuralIndex(path, cipher, tagProblems, reason)) {
        // The table's own problems already say why it cannot be opened.
        if (problems.empty()) problems.push_back(std::move(reason));
        return problems;
    }
    for (std::string& problem : tagProblems) problems.push_back(std::move(problem));
    return problems;
}

}  // namespace fnrk::engine
