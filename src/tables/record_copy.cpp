#include "tables/record_copy.hpp"

#include <string>
#include <vector>

#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "engine/sql/field_values.hpp"

namespace fnrk::tables {

using namespace engine;  // option and status numbers

namespace {

using SharedField = sql::FieldInfo;

// The target's fields that the source has under the same name and type.
Status SharedFields(Operations& from, Handle source, Operations& to, Handle target,
                    std::vector<SharedField>& shared) {
    if (Status status = sql::ReadFieldInfos(to, target, shared); status != AE_SUCCESS)
        return status;
    std::erase_if(shared, [&](const SharedField& field) {
        std::uint16_t sourceType = 0;
        return from.GetFieldType(source, field.name, sourceType) != AE_SUCCESS ||
               sourceType != field.type;
    });
    return AE_SUCCESS;
}

Status CopyValue(Operations& from, Handle source, Operations& to, Handle target,
                 const SharedField& field) {
    switch (field.type) {
        case ADS_LOGICAL: {
            bool value = false;
            Status status = from.GetLogical(source, field.name, value);
            return status == AE_SUCCESS ? to.SetLogical(target, field.name, value) : status;
        }
        case ADS_NUMERIC:
        case ADS_DOUBLE:
        case ADS_INTEGER: {
            double value = 0;
            Status status = from.GetDouble(source, field.name, value);
            return status == AE_SUCCESS ? to.SetDouble(target, field.name, value) : status;
        }
        case ADS_DATE: {
            std::string value;
            Status status = from.GetDate(source, field.name, value);
            return status == AE_SUCCESS ? to.SetDate(target, field.name, value) : status;
        }
        case ADS_TIMESTAMP: {
            std::int32_t julian = 0, milliseconds = 0;
            Status status = from.GetJulian(source, field.name, julian);
            if (status == AE_SUCCESS)
                status = from.GetMilliseconds(source, field.name, milliseconds);
            if (status == AE_SUCCESS) status = to.SetJulian(target, field.name, julian);
            return status == AE_SUCCESS ? to.SetMilliseconds(target, field.name, milliseconds)
                                        : status;
        }
        case ADS_MONEY: {
            std::int64_t units = 0;
            Status status = from.GetMoney(source, field.name, units);
            return status == AE_SUCCESS ? to.SetMoney(target, field.name, units) : status;
        }
        case ADS_BINARY:
        case ADS_IMAGE: {
            std::uint32_t length = 0;
            std::string bytes;
            Status status = from.GetBinaryLength(source, field.name, length);
            if (status == AE_SUCCESS && length > 0)
                status = from.GetBinary(source, field.name, 0, length, bytes);
            if (status != AE_SUCCESS || bytes.empty()) return status;
            return to.SetBinary(target, field.name, field.type,
                                static_cast<std::uint32_t>(bytes.size()), 0, bytes);
        }
        default: {  // text and memo
            std::string value;
            Status status = from.GetString(source, field.name, value, ADS_NONE);
            return status == AE_SUCCESS ? to.SetString(target, field.name, value) : status;
        }
    }
}

}  // namespace

Status CopyRecordsAcross(Operations& from, Handle source, Operations& to, Handle target) {
    std::vector<SharedField> shared;
    if (Status status = SharedFields(from, source, to, target, shared); status != AE_SUCCESS)
        return status;
    if (Status status = from.GotoTop(source); status != AE_SUCCESS) return status;
    for (;;) {
        bool atEof = true;
        if (Status status = from.AtEOF(source, atEof); status != AE_SUCCESS) return status;
        if (atEof) return AE_SUCCESS;
        if (Status status = to.AppendRecord(target); status != AE_SUCCESS) return status;
        for (const SharedField& field : shared) {
            if (Status status = CopyValue(from, source, to, target, field); status != AE_SUCCESS)
                return status;
        }
        if (Status status = from.Skip(source, 1); status != AE_SUCCESS) return status;
    }
}

}  // namespace fnrk::tables
