#pragma once

// A backend (and engine) that records which operations reach it, for the routing tests. Every
// call appends "<name>.<operation>" to a log shared by all recorders and answers `answer`.
// Connecting hands out `nextConnection` (else handleStart + 1); GetLastError answers
// `lastErrorText`.

#include <string>
#include <vector>

#include "backend/sql_backend.hpp"

namespace fnrk::tables::testing {

using engine::Handle;
using engine::MgmtConfig;
using engine::ProgressCallback;
using engine::Status;

// Every operation of the list, recorded under its name whatever its arguments.
class RecordingOperations : public backend::SqlBackend {
  protected:
    virtual Status Record(const char* operation) = 0;
    // Records `operation`, whatever the arguments it is called with.
    auto RecordCall(const char* operation) {
        return [this, operation](const auto&...) { return Record(operation); };
    }

  public:
#define FNRK_OPERATION(name, parameters, arguments) \
    Status name parameters override {               \
        return RecordCall(#name) arguments;         \
    }
#include "engine/operations.def"
};

// The operations that hand something out answer what the test set beforehand.
class RecordingBackend final : public RecordingOperations {
  public:
    RecordingBackend(std::string name, std::vector<std::string>& log)
        : name_(std::move(name)), log_(log) {}

    Status answer = engine::AE_SUCCESS;
    Handle nextConnection = 0;
    std::string lastPath;  // the path the last connect was given
    std::string lastErrorText;
    Status lastErrorCode = engine::AE_SUCCESS;
    std::vector<Handle> openTables;
    MgmtConfig config;
    bool findsConnections = true;         // false: FindConnection25 finds none
    std::uint16_t lastServerTypes = 0;    // given to the last Connect26
    std::uint16_t lastCachedRecords = 0;  // given to the last CacheRecords

    Handle handleStart() const override { return handleStart_; }
    void handleStart(Handle start) override { handleStart_ = start; }
    std::string TypeOfConnection() const override { return type_; }
    void TypeOfConnection(std::string_view type) override { type_ = type; }

    Status Connect26(std::string_view path, std::uint16_t serverTypes,
                     Handle& connection) override {
        lastServerTypes = serverTypes;
        return Connected(path, connection, "Connect26");
    }
    Status Connect60(std::string_view path, std::uint16_t, std::string_view, std::string_view,
                     std::uint32_t, Handle& connection) override {
        return Connected(path, connection, "Connect60");
    }
    Status FindConnection25(std::string_view path, Handle& connection) override {
        if (!findsConnections) {
            const Status status = Record("FindConnection25");
            return status == engine::AE_SUCCESS ? engine::AE_NO_CONNECTION : status;
        }
        return Connected(path, connection, "FindConnection25");
    }
    Status CacheRecords(Handle, std::uint16_t records) override {
        lastCachedRecords = records;
        return Record("CacheRecords");
    }
    Status GetLastError(Status& code, std::string& text) override {
        code = lastErrorCode;
        text = lastErrorText;
        return Record("GetLastError");
    }
    Status GetAllTable(std::vector<Handle>& tables) override {
        tables = openTables;
        return Record("GetAllTable");
    }
    Status GetAllTables(std::vector<Handle>& tables) override {
        tables = openTables;
        return Record("GetAllTables");
    }
    Status MgGetConfigInfo(Handle, MgmtConfig& out) override {
        out = config;
        return Record("MgGetConfigInfo");
    }
    Status TableCopy(Handle, std::string_view, std::string_view) override {
        return Record("TableCopy");
    }
    Status TableExists(Handle, std::string_view, bool&) override { return Record("TableExists"); }
    Status DropTable(Handle, std::string_view) override { return Record("DropTable"); }
    Status TableNames(Handle, std::vector<std::string>&) override { return Record("TableNames"); }
    Status GetActiveIndexHandle(Handle, Handle&) override { return Record("GetActiveIndexHandle"); }
    Status SetActiveIndexHandle(Handle, Handle) override { return Record("SetActiveIndexHandle"); }
    Status InitCopyTableContents(Handle) override { return Record("InitCopyTableContents"); }
    Status CloseCopyTableContents(Handle) override { return Record("CloseCopyTableContents"); }
    Status RefreshTable(Handle) override { return Record("RefreshTable"); }

    // Answers its own name, so that a test sees whose answer the caller got.
    Status GetVersion(std::uint32_t& major, std::uint32_t&, std::string&,
                      std::string& description) override {
        major = 1;
        description = name_;
        return Record("GetVersion");
    }

  private:
    Status Record(const char* operation) override {
        // Backends made by the dispatch are known by their handle range's start.
        log_.push_back((name_.empty() ? std::to_string(handleStart_) : name_) + "." + operation);
        return answer;
    }
    Status Connected(std::string_view path, Handle& connection, const char* operation) {
        lastPath = path;
        if (answer == engine::AE_SUCCESS) {
            connection = nextConnection != 0 ? nextConnection : handleStart_ + 1;
        }
        return Record(operation);
    }

    std::string name_;
    std::vector<std::string>& log_;
    Handle handleStart_ = 0;
    std::string type_;
};

}  // namespace fnrk::tables::testing
