#include "engine/order/seek_key.hpp"

#include <cstring>

#include "engine/constants.hpp"
#include "platform/codepage.hpp"

namespace fnrk::engine::order {

Status SeekKeyBytes(const OpenTag& tag, std::string_view value, std::uint16_t dataType,
                    std::string& key) {
    const cdx::KeyKind kind = tag.keys ? tag.keys->kind() : cdx::KeyKind::Character;
    const bool binary = kind == cdx::KeyKind::Numeric || kind == cdx::KeyKind::Date;
    switch (dataType) {
        case ADS_RAWKEY:
            key = std::string(value);
            return AE_SUCCESS;
        case ADS_DOUBLEKEY: {
            if (!binary || value.size() != sizeof(double)) return AE_INVALID_DATA_TYPE;
            double number = 0;
            std::memcpy(&number, value.data(), sizeof number);
            key = cdx::EncodeNumberKey(number);
            return AE_SUCCESS;
        }
        case ADS_STRINGKEY:
            if (kind == cdx::KeyKind::Numeric) {
                try {
                    key = cdx::EncodeNumberKey(std::stod(std::string(value)));
                } catch (const std::exception&) {
                    return AE_INVALID_DATA_TYPE;
                }
                return AE_SUCCESS;
            }
            if (binary) return AE_INVALID_DATA_TYPE;
            key = platform::Utf8ToCp1252(value);
            return AE_SUCCESS;
        default:
            return AE_INVALID_OPTION;
    }
}

std::string KeyText(const OpenTag& tag, const std::string& key) {
    const bool binary = tag.keys && (tag.keys->kind() == cdx::KeyKind::Numeric ||
                                     tag.keys->kind() == cdx::KeyKind::Date);
    return binary ? key : platform::Cp1252ToUtf8(key);
}

}  // namespace fnrk::engine::order
