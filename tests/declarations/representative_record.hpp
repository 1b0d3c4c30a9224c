#pragma once

// An in-memory representative record, blank-padded like the table's fields.

#include <map>
#include <string>

#include "declarations/representative_source.hpp"

namespace fnrk::testing {

class RepresentativeRecord : public declarations::RepresentativeSource {
  public:
    explicit RepresentativeRecord(std::map<std::string, std::string, std::less<>> fields)
        : fields_(std::move(fields)) {}

    std::string FieldText(std::string_view field) const override {
        auto found = fields_.find(field);
        return found == fields_.end() ? std::string() : found->second;
    }

  private:
    std::map<std::string, std::string, std::less<>> fields_;
};

}  // namespace fnrk::testing
