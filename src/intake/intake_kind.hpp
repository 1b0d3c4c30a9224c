#pragma once

// The three kinds of incoming files and what sets them apart: their parameter keys, where their
// files wait below the year folder, and which element of a file gives its period.

#include <cstdint>
#include <string_view>

namespace fnrk::intake {

enum class IntakeKind { Soda, Efff, Caro };

// Where the files of a kind wait inside the year folder.
enum class WaitingPlace {
    SodaFromFolders,  // every sub-folder whose upper-cased name contains "SODA_FROM_"
    YearFolder,       // the year folder itself
    CaroFolder,       // the "CARO" sub-folder
};

struct IntakeKindKeys {
    std::string_view word;     // "SODA", "EFFF", "CARO": the names' prefix
    std::string_view pathKey;  // base folder of the intake tree
    std::string_view lastFileKey;
    std::string_view waitingKey;  // waiting (suspense) account
    std::string_view anaTypeKey;  // empty: the kind has no analytical type
    std::string_view socialKey;   // empty: the period element is fixed
    std::string_view moveGroup;   // group value holding "MOVE"
    WaitingPlace waits;
};

const IntakeKindKeys& KeysOf(IntakeKind kind);

// The kind named "soda", "efff" or "caro" (any case); false for another name.
bool IntakeKindNamed(std::string_view name, IntakeKind& kind);

// File status codes, passed to UpdateFile and answered by the façade's ...Const... members.
inline constexpr std::int16_t kStatusNothing = 0;    // not handled yet
inline constexpr std::int16_t kStatusProcessed = 1;  // booked
inline constexpr std::int16_t kStatusError = 2;      // rejected
inline constexpr std::int16_t kStatusErrorAna = 3;   // analytical mapping missing (not CARO)
inline constexpr std::int16_t kStatusBadYear = 4;    // belongs to another book year
// Filed with the warnings like kStatusErrorAna; callers pass it for files booked with remarks.
inline constexpr std::int16_t kStatusWarning = 5;

}  // namespace fnrk::intake
