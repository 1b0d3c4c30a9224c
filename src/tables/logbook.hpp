#pragma once

// The pieces of a logbook entry that do not need a table: its time text and its control value.

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::tables {

// The logbook's record layout, in creation order.
inline constexpr const char* kLogbookFields =
    "USERNAME,C,15,0;LOGINNAME,C,100,0;CODESOC,C,15,0;CONNECT,N,1,0;ACTION,C,15,0;"
    "PROGRAM,C,15,0;ALIAS,C,15,0;RECNO,N,8,0;PARAM,C,50,0;CHECK,C,10,0;DATESTAMP,D,8,0;"
    "TIMESTAMP,C,8,0";

// "HH:MM:SS" in 24-hour form from the server's time text ("01:05:09 PM" -> "13:05:09"). An AM
// hour stays as it is; 12 PM stays 12 (noon).
std::string LogbookTime(std::string_view serverTime);

// The CHECK value: ten decimal digits of a 32-bit FNV-1a digest over the entry's user, action,
// alias, record, date and time, each followed by "|". It lets a reader see that an entry was
// edited by hand, not who did it.
std::string LogbookCheck(std::string_view user, std::string_view action, std::string_view alias,
                         std::uint32_t record, std::string_view date, std::string_view time);

// Actions after which the entry carries no control value and the logbook is not flushed again.
bool IsOpenCloseOrApproval(std::string_view action);

// The workstation's login name (from the environment).
std::string WorkstationLoginName();

}  // namespace fnrk::tables
