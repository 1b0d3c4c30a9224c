#pragma once

// A company dossier opened through the table layer for a command: the folder is named by the
// company's short name and holds its tables under that prefix ("SOC1/SOC1_param.dbf"). The
// parameter table is opened; other tables open when asked for.

#include <filesystem>

#include "engine/engine.hpp"
#include "tables/ads_class.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::cli {

class DossierTables {
  public:
    // A folder that is missing or holds no parameter table is a CommandFailure.
    explicit DossierTables(const std::filesystem::path& folder);
    tables::AdsClass& tables() { return tables_; }

  private:
    engine::Engine engine_;
    tables::SqlDatabase db_;
    tables::AdsClass tables_;
};

}  // namespace fnrk::cli
