#include "engine/expr/value_type.hpp"

namespace fnrk::engine::expr {

std::string_view TypeName(ValueType type) {
    switch (type) {
        case ValueType::Character:
            return "character";
        case ValueType::Numeric:
            return "numeric";
        case ValueType::Date:
            return "date";
        case ValueType::Logical:
            return "logical";
    }
    return "logical";
}

}  // namespace fnrk::engine::expr
