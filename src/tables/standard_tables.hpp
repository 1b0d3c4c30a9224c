#pragma once

// The standard tables of a dossier: which file and which compound index each standard alias
// opens, and the lists of tables that several routines walk.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::tables {

struct StandardTable {
    std::string tableFile;  // behind the dossier prefix and "_"
    std::string indexFile;  // empty: the table has no index
};

// The files of a standard alias (upper case; "DBK_01" or "DBK01" for a journal); nothing for an
// alias that is not a standard one.
std::optional<StandardTable> StandardTableOf(std::string_view alias);

// The tables of a dossier whose files IsAnyFileExternalOpenExceptParam examines, in order.
const std::vector<std::string>& DossierTableNames();
// The tables FileOpenAll opens, in order.
const std::vector<std::string>& OpenAllTableNames();
// The tables a data dictionary of the dossier holds, in order ("DBK" stands for each journal).
const std::vector<std::string>& DictionaryTableNames();

// The table of period totals is read as the entries table in the order of this tag.
inline constexpr const char* kPeriodTotalsTag = "TOTPER0";
// Journals a dossier may have: "DBK_01" to "DBK_09".
inline constexpr int kJournalCount = 9;

}  // namespace fnrk::tables
