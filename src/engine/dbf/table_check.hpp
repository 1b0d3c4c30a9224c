#pragma once

// Verifies a table file: header, record count against the file size, deletion flags and memo
// blocks.

#include <memory>
#include <string>
#include <vector>

#include "engine/crypt/file_cipher.hpp"

namespace fnrk::engine::dbf {

// What is wrong with the table; empty when nothing is. The records and memos of an encrypted
// table are checked only with its cipher (`cipher`, from its password).
std::vector<std::string> CheckTable(const std::string& path,
                                    std::shared_ptr<const crypt::FileCipher> cipher = nullptr);

}  // namespace fnrk::engine::dbf
