#pragma once

// The typed field functions and the locate / continue search over an open table's current
// record, shared by every kind of open table that keeps records in the table-file layout (the
// embedded engine's and the SQL backend's). A derived table says where its current record is,
// how an edit begins, how its memos are kept and how it steps for a search.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "engine/cursor/engine_settings.hpp"
#include "engine/dbf/field.hpp"
#include "engine/errors.hpp"
#include "engine/expr/expression.hpp"

namespace fnrk::engine::cursor {

class RecordFunctions {
  public:
    explicit RecordFunctions(const EngineSettings& settings) : settings_(settings) {}
    virtual ~RecordFunctions() = default;

    // --- typed fields of the current record (text in UTF-8)
    [[nodiscard]] Status GetText(const dbf::Field& field, std::string& text,
                                 std::uint16_t trimOption);
    [[nodiscard]] Status SetText(const dbf::Field& field, std::string_view text);
    [[nodiscard]] Status GetNumber(const dbf::Field& field, double& value);
    [[nodiscard]] Status SetNumber(const dbf::Field& field, double value);
    [[nodiscard]] Status GetLogical(const dbf::Field& field, bool& value);
    [[nodiscard]] Status SetLogical(const dbf::Field& field, bool value);
    [[nodiscard]] Status GetJulian(const dbf::Field& field, std::int32_t& julian);
    [[nodiscard]] Status SetJulian(const dbf::Field& field, std::int32_t julian);
    // Date-and-time fields: the day through the julian functions above (0 empties the field),
    // the time of day in milliseconds.
    [[nodiscard]] Status GetMilliseconds(const dbf::Field& field, std::int32_t& milliseconds);
    [[nodiscard]] Status SetMilliseconds(const dbf::Field& field, std::int32_t milliseconds);
    // Numbers in ten-thousandths: a currency field's exactly, any other number rounded.
    [[nodiscard]] Status GetMoney(const dbf::Field& field, std::int64_t& units);
    [[nodiscard]] Status SetMoney(const dbf::Field& field, std::int64_t units);

    // --- searches: the first record from the top (or bottom) meeting the condition, then on
    [[nodiscard]] Status Locate(std::string_view expression, bool forward, bool& found,
                                std::string& message);
    [[nodiscard]] Status Continue(bool& found);

    // Compiles a logical condition over this table's fields; no value and a reason in
    // `message` when it does not compile or is not logical.
    std::optional<expr::Expression> CompileCondition(std::string_view text, std::string& message);

  protected:
    virtual std::unique_ptr<expr::FieldResolver> FieldNames() const = 0;

    // The current record's bytes (the blank phantom at EOF), the whole record length.
    virtual std::string_view RecordBytes() = 0;
    virtual std::uint32_t CurrentRecordNumber() const = 0;
    // Makes the current record writable; EditedRecord() is valid after it succeeded.
    [[nodiscard]] virtual Status BeginEdit() = 0;
    virtual char* EditedRecord() = 0;
    // Memo contents as stored (Windows-1252 for text memos).
    [[nodiscard]] virtual Status ReadMemo(const dbf::Field& field, std::string& data) = 0;
    [[nodiscard]] virtual Status WriteMemo(const dbf::Field& field, std::uint32_t memoType,
                                           std::string_view data) = 0;
    // Navigation in record order for the searches; EOF ends them.
    [[nodiscard]] virtual Status StepToEnd(bool top) = 0;
    [[nodiscard]] virtual Status StepBy(std::int32_t records) = 0;
    virtual bool PastEnd(bool forward) const = 0;
    virtual void MoveBeyondLast() = 0;

    const EngineSettings& settings_;

  private:
    bool LocateMatches();
    [[nodiscard]] Status SetStampText(const dbf::Field& field, std::string_view text);

    std::optional<expr::Expression> locate_;
    bool locateForward_ = true;
};

}  // namespace fnrk::engine::cursor
