#pragma once

// A password given to a command as a file whose first line it is, so that it stays out of the
// process list and the shell history.

#include <string>

namespace fnrk::cli {

// The first line of the file (a final carriage return dropped); CommandFailure when the file
// cannot be read or the line is empty.
std::string ReadPasswordFile(const std::string& path);

}  // namespace fnrk::cli
