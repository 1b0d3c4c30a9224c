#pragma once

// Keeps the caller's current table: remembers the current alias and makes it current again when
// the guard ends, if that table is still open. Readers that move to other tables use it so the
// caller never notices the detour.

#include <string>

#include "tables/ads_class.hpp"

namespace fnrk::tables {

class CurrentAliasGuard {
  public:
    explicit CurrentAliasGuard(AdsClass& tables)
        : tables_(tables), alias_(tables.GetCurrentAlias()) {}
    ~CurrentAliasGuard() {
        if (!alias_.empty() && tables_.IsAlias(alias_)) tables_.ActivateAlias(alias_);
    }
    CurrentAliasGuard(const CurrentAliasGuard&) = delete;
    CurrentAliasGuard& operator=(const CurrentAliasGuard&) = delete;

    const std::string& alias() const { return alias_; }

  private:
    AdsClass& tables_;
    std::string alias_;
};

}  // namespace fnrk::tables
