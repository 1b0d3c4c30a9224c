#pragma once

// Verification of one tag: the tree's structure, and (given how keys are made from records) its
// contents. Problems are reported as sentences; an empty list means the tag is sound.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/cdx/index_tag.hpp"

namespace fnrk::engine::cdx {

// Attributes, levels, key order, interior keys equal to their child's last entry, sibling links,
// and no node reached twice. keyCount receives the number of keys when the structure is sound.
std::vector<std::string> CheckTagStructure(IndexTag& tag, std::uint64_t* keyCount = nullptr);

// The key a record should have in the tag, or nothing when the record does not qualify (FOR).
using ExpectedKey = std::function<std::optional<std::string>(std::uint32_t record)>;

// Every entry's key equals its record's expected key and every qualifying record is present once
// (a unique tag: every qualifying key once). Assumes a sound structure.
std::vector<std::string> CheckTagContents(IndexTag& tag, std::uint32_t recordCount,
                                          const ExpectedKey& expected);

}  // namespace fnrk::engine::cdx
