#include "engine/dbf/table_header.hpp"

#include <algorithm>
#include <cstring>

#include "engine/io/byte_order.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::dbf {

using namespace io;

namespace {

constexpr std::size_t kBacklinkSize = 263;
constexpr std::size_t kNameSize = 11;

bool IsKnownVersion(std::uint8_t version) {
    return version == 0x03 || version == 0xF5 || version == 0x30 || version == 0x31 ||
           version == 0x32;
}

// Empty when the type and sizes make sense, else why not.
std::string CheckFieldShape(const Field& field) {
    const std::string what = "field " + field.name + ": ";
    if (field.length == 0) return what + "length 0";
    switch (field.type) {
        case 'C':
            return {};
        case 'N':
        case 'F':
            if (field.length > 20) return what + "numeric length above 20";
            if (field.decimals > 0 && field.decimals + 2 > field.length)
                return what + "more decimals than the length allows";
            return {};
        case 'D':
            return field.length == 8 ? std::string() : what + "date length is not 8";
        case 'L':
            return field.length == 1 ? std::string() : what + "logical length is not 1";
        case 'M':
        case 'G':
        case 'P':
            return field.length == 10 || field.length == 4 ? std::string()
                                                           : what + "memo length is not 10 or 4";
        case 'I':
            return field.length == 4 ? std::string() : what + "integer length is not 4";
        case 'B':
        case 'Y':
        case 'T':
            return field.length == 8 ? std::string() : what + "length is not 8";
        default:
            return what + "unknown type '" + std::string(1, field.type) + "'";
    }
}

}  // namespace

bool TableHeader::HasMemoFile() const {
    return std::any_of(fields.begin(), fields.end(),
                       [](const Field& field) { return IsMemoType(field.type); });
}

std::optional<std::size_t> TableHeader::FindField(std::string_view name) const {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (platform::EqualsNoCase(fields[i].name, name)) return i;
    }
    return std::nullopt;
}

std::size_t DeclaredHeaderLength(std::string_view prefix) {
    return prefix.size() < kHeaderPrefixSize ? kHeaderPrefixSize : ReadLe16(prefix.data() + 8);
}

std::string ParseTableHeader(std::string_view bytes, std::uint64_t fileSize, TableHeader& header) {
    if (bytes.size() < kHeaderPrefixSize || fileSize < kHeaderPrefixSize)
        return "file too short for a table header";
    TableHeader parsed;
    parsed.version = static_cast<std::uint8_t>(bytes[0]);
    if (!IsKnownVersion(parsed.version)) return "unrecognised version byte";
    parsed.updateYear = static_cast<std::uint8_t>(bytes[1]);
    parsed.updateMonth = static_cast<std::uint8_t>(bytes[2]);
    parsed.updateDay = static_cast<std::uint8_t>(bytes[3]);
    parsed.recordCount = ReadLe32(bytes.data() + 4);
    parsed.headerLength = ReadLe16(bytes.data() + 8);
    parsed.recordLength = ReadLe16(bytes.data() + 10);
    std::copy_n(bytes.begin() + 12, parsed.reserved.size(), parsed.reserved.begin());
    parsed.flags = static_cast<std::uint8_t>(bytes[28]);
    parsed.codePage = static_cast<std::uint8_t>(bytes[29]);

    const std::size_t backlink = parsed.IsVisualFoxPro() ? kBacklinkSize : 0;
    if (parsed.headerLength < kHeaderPrefixSize + kDescriptorSize + 1 + backlink)
        return "header length too small";
    if (parsed.headerLength > fileSize) return "header length beyond the end of the file";
    if (bytes.size() < parsed.headerLength) return "file too short for its header";
    if (parsed.recordLength < 2) return "record length too small";

    std::size_t position = kHeaderPrefixSize;
    std::uint32_t offset = 1;
    for (;;) {
        if (position >= parsed.headerLength) return "field descriptors without terminator";
        if (bytes[position] == 0x0D) break;
        if (position + kDescriptorSize > parsed.headerLength)
            return "field descriptors without terminator";
        const char* descriptor = bytes.data() + position;
        Field field;
        field.name.assign(descriptor, strnlen(descriptor, kNameSize));
        if (field.name.empty()) return "field without a name";
        field.type = static_cast<char>(platform::UpperCase(std::string(1, descriptor[11]))[0]);
        field.length = static_cast<std::uint8_t>(descriptor[16]);
        field.decimals = static_cast<std::uint8_t>(descriptor[17]);
        if (std::string problem = CheckFieldShape(field); !problem.empty()) return problem;
        // Fields are found by name: a second one of the same name could never be read.
        if (parsed.FindField(field.name))
            return "two fields named " + platform::Cp1252ToUtf8(field.name);
        field.offset = offset;
        offset += field.length;
        parsed.fields.push_back(std::move(field));
        position += kDescriptorSize;
    }
    if (offset != parsed.recordLength) return "record length differs from the field lengths";
    if (position + 1 + backlink > parsed.headerLength) return "header length too small";
    const std::uint64_t dataEnd = std::uint64_t{parsed.headerLength} +
                                  std::uint64_t{parsed.recordCount} * parsed.recordLength;
    if (dataEnd > fileSize) return "record count beyond the end of the file";
    header = std::move(parsed);
    return {};
}

std::string SerializeHeaderPrefix(const TableHeader& header) {
    std::string prefix(kHeaderPrefixSize, '\0');
    prefix[0] = static_cast<char>(header.version);
    prefix[1] = static_cast<char>(header.updateYear);
    prefix[2] = static_cast<char>(header.updateMonth);
    prefix[3] = static_cast<char>(header.updateDay);
    WriteLe32(prefix.data() + 4, header.recordCount);
    WriteLe16(prefix.data() + 8, header.headerLength);
    WriteLe16(prefix.data() + 10, header.recordLength);
    std::copy(header.reserved.begin(), header.reserved.end(), prefix.begin() + 12);
    prefix[28] = static_cast<char>(header.flags);
    prefix[29] = static_cast<char>(header.codePage);
    return prefix;
}

std::string SerializeTableHeader(const TableHeader& header) {
    std::string bytes = SerializeHeaderPrefix(header);
    for (const Field& field : header.fields) {
        std::string descriptor(kDescriptorSize, '\0');
        std::copy_n(field.name.begin(), std::min(field.name.size(), std::size_t{10}),
                    descriptor.begin());
        descriptor[11] = field.type;
        WriteLe32(descriptor.data() + 12, field.offset);
        descriptor[16] = static_cast<char>(field.length);
        descriptor[17] = static_cast<char>(field.decimals);
        bytes += descriptor;
    }
    bytes += '\x0D';
    bytes.resize(header.headerLength, '\0');
    return bytes;
}

void LayOutNewTable(TableHeader& header) {
    std::uint32_t offset = 1;
    for (Field& field : header.fields) {
        field.offset = offset;
        offset += field.length;
    }
    header.recordLength = static_cast<std::uint16_t>(offset);
    // Terminator plus one zero byte, as the FoxPro 2.x writers leave it.
    header.headerLength =
        static_cast<std::uint16_t>(kHeaderPrefixSize + kDescriptorSize * header.fields.size() + 2);
    const bool memo = header.HasMemoFile();
    header.version = memo ? kVersionWithMemo : kVersionPlain;
    header.flags = static_cast<std::uint8_t>((header.flags & ~kFlagMemo) | (memo ? kFlagMemo : 0));
}

}  // namespace fnrk::engine::dbf
