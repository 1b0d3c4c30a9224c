#pragma once

// Verifies a table file: header, record count against the file size, deletion flags and memo
// blocks.

#include <string>
#include <vector>

namespace fnrk::engine::dbf {

// What is wrong with the table; empty when nothing is.
std::vector<std::string> CheckTable(const std::string& path);

}  // namespace fnrk::engine::dbf
