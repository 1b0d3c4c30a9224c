#include "backend/backend_table.hpp"
#include "backend/column_codec.hpp"
#include "engine/dbf/field_codec.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers

const dbf::Field* BackendTable::FindField(std::string_view name) const {
    return layout_.Find(name);
}

std::size_t FieldIndex(const TableLayout& layout, const dbf::Field& field) {
    return static_cast<std::size_t>(&field - layout.fields.data());
}

Status BackendTable::GetMemo(const dbf::Field& field, std::string& data) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    data = current_.memos[FieldIndex(layout_, field)];
    return AE_SUCCESS;
}

Status BackendTable::SetMemo(const dbf::Field& field, std::string_view data) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    current_.memos[FieldIndex(layout_, field)] = data;
    MarkMemo(field, !data.empty(), current_.record);
    return AE_SUCCESS;
}

}  // namespace fnrk::backend
