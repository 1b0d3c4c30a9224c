#pragma once

// MappingTable: one mapping table of the company, opened shared under its alias through the
// table-access object. Reads seek through a named query; each write is a seek, a write and a
// flush-and-unlock, so that several workstations can map codes of one company at once: a
// record found is locked before it is rewritten, and a missing key is appended under a table
// lock after a second seek, so that two writers of one new key leave one record.
//
// Callers keep their current table with a CurrentAliasGuard; the methods leave the mapping
// table current.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "intake/company_facts.hpp"
#include "intake/mapping_layouts.hpp"
#include "tables/field_values.hpp"

namespace fnrk::intake {

// A named query and the tag it orders by.
struct MappingQuery {
    std::string_view name;
    std::string_view tag;
};

using FieldValues = std::vector<std::pair<std::string_view, tables::FieldValue>>;

class MappingTable {
  public:
    MappingTable(CompanyFacts& company, const MappingLayout& layout)
        : company_(company), layout_(layout) {}

    // The table's data file.
    std::string DataFile() const;
    bool Exists();
    // Creates the table with its tags when it does not exist yet (MEFFFSOC from its template);
    // the caller's current alias is kept. True when the table exists afterwards.
    bool Create();
    // Rebuilds the tags, with the table opened exclusively; false when somebody has it open.
    bool CreateIndexes();
    // Opens the table shared under its alias when it is not open; true when it is open.
    bool Open();

    // Opens the table and makes it current in the query's order, at its first record.
    bool OpenInOrder(const MappingQuery& query);
    // Seeks `key` through `query`; on true the found record is current.
    bool Seek(const MappingQuery& query, std::string_view key);
    // A field of the current record, trailing blanks removed.
    std::string Text(std::string_view field);
    // Writes `values` into the record of `key` (appending it when missing). False when the
    // table cannot be opened or locked, or a write fails.
    bool Write(const MappingQuery& query, std::string_view key, const FieldValues& values);
    // Deletes the record of `key`; false when there is none or it cannot be locked.
    bool Delete(const MappingQuery& query, std::string_view key);
    // Writes `values` into every record, or deletes every record (empty `values`), under a
    // table lock.
    bool ChangeAll(const FieldValues& values);

    bool FlushAndUnlock();
    // Removes the deleted records, the table opened exclusively for it, and closes it; false
    // when somebody else has it open.
    bool PackAndClose();

  private:
    bool ActivateQuery(const MappingQuery& query);
    bool Put(const FieldValues& values);
    bool CreateFromTemplate();

    CompanyFacts& company_;
    const MappingLayout& layout_;
};

// The key of a document line in ACTCOM and CCDDETAIL: journal (6), book year (1), period (2),
// the document number's numeric value right-aligned in 8 characters, line order (3).
std::string DocumentLineKey(std::string_view DbkCode, std::string_view Bookyear,
                            std::string_view Period, std::string_view DocNumber,
                            std::string_view docOrder);

// "X" + `value` padded with blanks to `width`: the live key of a mapping tag.
std::string LiveKey(std::string_view value, std::size_t width);

}  // namespace fnrk::intake
