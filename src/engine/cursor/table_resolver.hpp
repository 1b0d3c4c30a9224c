#pragma once

#include <strings.h>

#include "engine/dbf/table_header.hpp"
#include "engine/expr/field_resolver.hpp"

namespace fnrk::engine::cursor {

// Binds expression field names to the fields of one table; "ALIAS->" must name that table.
class TableResolver final : public expr::FieldResolver {
  public:
    TableResolver(const dbf::TableHeader& header, std::string_view alias)
        : header_(header), alias_(alias) {}

    std::optional<expr::FieldBinding> Resolve(std::string_view alias,
                                              std::string_view name) const override {
        if (!alias.empty() && (alias.size() != alias_.size() ||
                               strncasecmp(alias.data(), alias_.data(), alias.size()) != 0))
            return std::nullopt;
        const auto index = header_.FindField(name);
        if (!index) return std::nullopt;
        const dbf::Field& field = header_.fields[*index];
        return expr::FieldBinding{0, field.type, field.offset, field.length, field.decimals};
    }

  private:
    const dbf::TableHeader& header_;
    std::string_view alias_;
};

}  // namespace fnrk::engine::cursor
