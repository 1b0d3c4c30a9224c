#include "engine/field_type_code.hpp"

#include "engine/constants.hpp"

namespace fnrk::engine {

std::uint16_t FieldTypeCode(char type) {
    switch (type) {
        case 'C':
            return ADS_STRING;
        case 'N':
        case 'F':
            return ADS_NUMERIC;
        case 'D':
            return ADS_DATE;
        case 'L':
            return ADS_LOGICAL;
        case 'M':
            return ADS_MEMO;
        case 'P':
            return ADS_BINARY;
        case 'G':
            return ADS_IMAGE;
        case 'I':
            return ADS_INTEGER;
        case 'B':
            return ADS_DOUBLE;
        case 'Y':
            return ADS_MONEY;
        case 'T':
            return ADS_TIMESTAMP;
        default:
            return ADS_TYPE_UNKNOWN;
    }
}

}  // namespace fnrk::engine
