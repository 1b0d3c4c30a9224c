#pragma once

// The fixed part of a DBF file: 32-byte header, 32-byte field descriptors, 0x0D terminator and,
// for Visual FoxPro tables, the 263-byte backlink area.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/dbf/field.hpp"

namespace fnrk::engine::dbf {

inline constexpr std::uint8_t kVersionPlain = 0x03;
inline constexpr std::uint8_t kVersionWithMemo = 0xF5;
inline constexpr std::uint8_t kFlagStructuralIndex = 0x01;
inline constexpr std::uint8_t kFlagMemo = 0x02;
inline constexpr std::uint8_t kCodePageWindows1252 = 0x03;
inline constexpr char kEndOfFile = 0x1A;
inline constexpr std::size_t kHeaderPrefixSize = 32;
inline constexpr std::size_t kDescriptorSize = 32;

struct TableHeader {
    std::uint8_t version = kVersionPlain;
    std::uint8_t updateYear = 0;  // years since 1900
    std::uint8_t updateMonth = 1;
    std::uint8_t updateDay = 1;
    std::uint32_t recordCount = 0;
    std::uint16_t headerLength = 0;
    std::uint16_t recordLength = 0;
    // Bytes 12 to 27, kept as found: an encrypted table's mark lives there.
    std::array<std::uint8_t, 16> reserved{};
    std::uint8_t flags = 0;
    std::uint8_t codePage = kCodePageWindows1252;
    std::vector<Field> fields;

    bool IsVisualFoxPro() const { return version == 0x30 || version == 0x31 || version == 0x32; }
    bool HasMemoFile() const;
    // Index of the field with this name (any letter case), or nullopt.
    std::optional<std::size_t> FindField(std::string_view name) const;
};

// Reads a header from the first bytes of a file of `fileSize` bytes. Returns an empty string on
// success, else a message saying what is wrong (the file is then not usable).
std::string ParseTableHeader(std::string_view bytes, std::uint64_t fileSize, TableHeader& header);

// Bytes needed to parse the header whose first 32 bytes are given (from the header length).
std::size_t DeclaredHeaderLength(std::string_view prefix);

// The 32-byte prefix with the record count and update date of `header`.
std::string SerializeHeaderPrefix(const TableHeader& header);

// The whole fixed part: prefix, descriptors (with record offsets), terminator, padding up to
// headerLength.
std::string SerializeTableHeader(const TableHeader& header);

// Lays out fields (offsets, record length, header length, version and memo flag) for a new table.
void LayOutNewTable(TableHeader& header);

}  // namespace fnrk::engine::dbf
