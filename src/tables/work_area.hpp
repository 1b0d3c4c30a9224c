#pragma once

// The work-area routines: an older style of table access kept for the import and export code.
// One table is the current work area; fields may be named "ALIAS->FIELD" to reach another open
// table for one call. Everything goes through the wrappers of SqlDatabase.
//
// Split by concern:
//   work_area.cpp            opening, selecting, field references, typed reads and writes
//   work_area_navigation.cpp moving, orders and index creation
//   work_area_structure.cpp  the structure builder, SXCOPYSTRU and SXCREATEFR
//   work_area_append.cpp     appendfrom and the encryption routines

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "tables/field_values.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {

// The most fields one structure definition may hold: as many as a table may (255 in a DBF
// header), so that any structure copied with SXCOPYSTRU can be created again.
inline constexpr int kMaxStructureFields = 255;

class WorkAreas {
  public:
    using Handle = engine::Handle;
    using Status = engine::Status;

    // `db` is the process's dispatch; it must outlive this object.
    explicit WorkAreas(SqlDatabase& db);

    // The current work area's table handle; 0 when none.
    Handle Current() const { return current_; }
    // The connection that tables are opened, created and looked up on. 0 (the default) lets
    // each path choose, which serves tables kept as files; a SQL-kept dossier needs its
    // connection set here.
    void SetConnection(Handle connection) { connection_ = connection; }
    Handle Connection() const { return connection_; }
    // The password of the dossier's encrypted tables, for the sources appendfrom reads.
    void SetPassword(std::string password) { password_ = std::move(password); }

    // Opens `path` under `alias` ("SHARED", "EXCLUSIVE" or "READONLY"; empty means shared) and
    // makes it the current work area. With an index file, that file is opened too and its first
    // tag becomes the order; without one the order is the natural one. Any failure shows
    // "Error in sx_use" and leaves the current work area as it was.
    [[nodiscard]] Status sx_use(std::string_view path, std::string_view alias,
                                std::string_view openMode = {}, std::string_view indexFile = {});
    // Makes the table of an alias (or of a handle given as a number) the current work area; an
    // unknown one shows "WorkArea " + alias + " not found (sx_select)" and returns false.
    bool sx_select(std::string_view aliasOrHandle);
    // Closes the current work area's table; afterwards there is no current work area.
    [[nodiscard]] Status sx_close();

    // --- fields of the current record. A reference is "FIELD" (current work area) or
    // "ALIAS->FIELD". An alias that names no open table shows "Bad alias name"; reads then give
    // an empty value and writes change nothing and return its status.
    std::string sx_GetString(std::string_view reference);  // trailing blanks removed
    double sx_GetDouble(std::string_view reference);
    bool sx_GetLogical(std::string_view reference);
    std::string sx_GetDate(std::string_view reference);  // "DD/MM/YYYY", or kEmptyDate
    std::string sx_GetMemo(std::string_view reference);
    [[nodiscard]] Status sx_PutString(std::string_view reference, std::string_view value);
    [[nodiscard]] Status sx_PutDouble(std::string_view reference, double value);
    [[nodiscard]] Status sx_PutLogical(std::string_view reference, bool value);
    // `date` "DD/MM/YYYY"; empty or kEmptyDate stores the empty date.
    [[nodiscard]] Status sx_PutDate(std::string_view reference, std::string_view date);
    [[nodiscard]] Status sx_PutMemo(std::string_view reference, std::string_view text);
    [[nodiscard]] Status sx_Append();
    [[nodiscard]] Status sx_Delete();

    // --- navigation of the current work area, in its order
    [[nodiscard]] Status sx_GoTop();
    [[nodiscard]] Status sx_GoBottom();
    [[nodiscard]] Status sx_Skip(std::int32_t records = 1);
    [[nodiscard]] Status sx_Go(std::uint32_t record);
    bool sx_Bof();
    bool sx_Eof();
    std::uint32_t sx_RecNo();
    // Records of the table, filters ignored.
    std::uint32_t sx_RecCount();

    // --- orders and indexes
    // The full name of the tag whose name starts with `tag` (trimmed, any case), or "tag_err".
    std::string sx_TagName(std::string_view tag);
    // Makes the tag the order (empty: natural order). An unknown tag changes nothing; a
    // descending one is refused with "Descending index not currently supported in this
    // function".
    bool sx_SetOrder(std::string_view tag);
    // The active tag's name; empty in natural order.
    std::string sx_OrderName();
    // Creates tag `tag` on `expression` (optional FOR `condition`) in `indexFile` (empty: the
    // structural index) and makes it the order. `options` as the engine's CreateIndex; a
    // descending one is refused as above.
    [[nodiscard]] Status sx_IndexTag(std::string_view indexFile, std::string_view tag,
                                     std::string_view expression, std::string_view condition = {},
                                     std::uint32_t options = engine::ADS_COMPOUND);
    // Seeks a text key in the order; true when found.
    bool sx_Seek(std::string_view key, bool softSeek = false);

    // --- the structure builder
    // Starts a definition for a table at `path` under `alias`, forgetting any earlier one.
    void sx_CreateNew(std::string_view path, std::string_view alias);
    // Adds "name,type,length,decimals" (name and type trimmed); false past kMaxStructureFields.
    bool sx_CreateField(std::string_view name, std::string_view type, int length, int decimals);
    // Creates the table from the definition and closes it again; the definition is kept.
    [[nodiscard]] Status sx_CreateExec();
    const std::string& StructureDefinition() const { return definition_; }

    // Writes the structure table of the current work area at `targetPath`.
    [[nodiscard]] Status SXCOPYSTRU(std::string_view targetPath);
    // Creates the table `newPath` from the structure table at `structurePath`.
    [[nodiscard]] Status SXCREATEFR(std::string_view newPath, std::string_view structurePath);
    // Appends the records of `sourcePath` that meet `condition` (xBase, may be empty) and are
    // not deleted to the current work area. An encrypted source needs the password set above.
    [[nodiscard]] Status appendfrom(std::string_view sourcePath, std::string_view condition = {});

    // --- encryption of the current work area's table
    [[nodiscard]] Status sx_Encrypt(std::string_view password);
    [[nodiscard]] Status sx_Decrypt(std::string_view password);
    bool sx_IsEncrypted();

  private:
    // The table a field reference names, and the field part; false (after "Bad alias name")
    // when the alias part names no open table.
    bool Resolve(std::string_view reference, Handle& table, std::string& field);
    // The table open under `alias`, on the work areas' connection or any other.
    bool FindAlias(std::string_view alias, Handle& table);
    // A read of a field reference: `read(table, field, value)`; `fallback` when the reference
    // names no table or the read fails.
    template <class Value, class Read>
    Value ReadField(std::string_view reference, Value fallback, Read read);
    // A write of a field reference: `write(table, field)`, after the reference is resolved.
    template <class Write>
    [[nodiscard]] Status WriteField(std::string_view reference, Write write);
    // The handle navigation goes through: the order's index, else the table.
    Handle NavigationHandle() const;
    // The tag that will be the order: refuses a descending one with its message.
    bool UsableOrder(Handle index);
    // An error box titled "Fennrick error": every refusal of these routines is one.
    static void ShowError(const std::string& text);

    SqlDatabase& db_;
    Handle connection_ = 0;
    std::string password_;
    Handle current_ = 0;
    // The order of each table opened or selected here (index handle; absent: natural order).
    std::map<Handle, Handle> orders_;
    std::string createPath_;
    std::string createAlias_;
    std::string definition_;
    int definedFields_ = 0;
};

// The full name of the first tag of `table` whose name starts with `name` (both trimmed, any
// case), or "tag_err" when none does. An empty name names no tag and gives "".
std::string IndexTagName(SqlDatabase& db, engine::Handle table, std::string_view name);

}  // namespace fnrk::tables
