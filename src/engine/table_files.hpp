#pragma once

// What the tools of a table's files need that the operation set does not tell: the structure as
// the file header holds it (version byte, field letters) and a check of the table file, its memo
// file and every tag of its structural index. Both read the files without an engine handle.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/errors.hpp"

namespace fnrk::engine {

struct TableFileField {
    std::string name;  // UTF-8
    char type = 'C';   // the letter the file holds
    std::uint32_t length = 0;
    std::uint32_t decimals = 0;
};

struct TableFileStructure {
    std::uint8_t version = 0;
    std::uint32_t recordCount = 0;
    std::uint16_t recordLength = 0;
    std::vector<TableFileField> fields;
};

// Both take a table's file as the engine's opens do: a file of the same name in another letter
// case is taken when the exact name is missing.

// The header of the table at `path`; a table that cannot be opened answers its status and why.
[[nodiscard]] Status ReadTableFileStructure(const std::string& path, TableFileStructure& structure,
                                            std::string& message);

// What is wrong with the table, its memo file and the tags of its structural index; empty when
// nothing is. A table whose index cannot be opened for the tag checks has that reason listed
// unless the table file itself already had problems.
// An encrypted table is checked whole with its password, its files only without.
std::vector<std::string> CheckTableFiles(const std::string& path, std::string_view password = {});

}  // namespace fnrk::engine
