#pragma once

// The process's one table engine, the dispatch over it and the SQL backends, and the shared
// table-access object. Each is made on first use and lives until the process ends; the
// table-access object tells the process's ApiIni where the open users table is.

#include "engine/engine.hpp"
#include "tables/ads_class.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {

SqlDatabase& SharedSqlDatabase();
// The engine under SharedSqlDatabase(): its handles are the dispatch's engine handles.
engine::Engine& SharedEngine();
AdsClass& SharedAdsClass();

}  // namespace fnrk::tables
