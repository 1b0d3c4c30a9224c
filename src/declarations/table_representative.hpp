#pragma once

// The representative of a declaration as the current record of a table open under an alias
// (the caller positions it), read field by field through the table access object.

#include <string>

#include "declarations/representative_source.hpp"

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::declarations {

class TableRepresentative final : public RepresentativeSource {
  public:
    // `tables` must outlive this object.
    TableRepresentative(tables::AdsClass& tables, std::string alias)
        : tables_(tables), alias_(std::move(alias)) {}

    // Empty for a field the table does not have or an alias that is not open; the caller's
    // current alias is kept.
    std::string FieldText(std::string_view field) const override;

  private:
    tables::AdsClass& tables_;
    std::string alias_;
};

}  // namespace fnrk::declarations
