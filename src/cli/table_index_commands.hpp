#pragma once

// The index half of `fennrick table`: tags, dump --tag, seek, index, reindex, and the tag checks
// that `table check` adds.

#include <memory>
#include <string>
#include <vector>

#include "engine/order/table_indexes.hpp"

namespace fnrk::cli {

// Opens the table's structural index and keeps it up to date with every change made through
// `table` while the returned object lives.
std::unique_ptr<engine::order::TableIndexes> FollowIndexes(engine::cursor::TableCursor& table);

// Every record (deleted ones too) as `table dump` prints them, in the order of a tag.
void DumpInTagOrder(const std::string& file, const std::string& tag);

// Problems of every tag of the table's structural index (none when it has none).
std::vector<std::string> CheckTableIndexes(const std::string& file);

}  // namespace fnrk::cli
