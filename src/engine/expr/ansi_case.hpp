#pragma once

// Upper and lower case of single Windows-1252 bytes, accented letters included, for UPPER()
// and LOWER() over record bytes without converting to UTF-8 and back.

namespace fnrk::engine::expr {

char AnsiUpper(char byte);
char AnsiLower(char byte);

}  // namespace fnrk::engine::expr
