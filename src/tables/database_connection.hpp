#pragma once

// DataBaseConnection: a connection of the dispatch, for callers that keep one and drop it at the
// end, whether the engine or a SQL backend owns it.

#include "engine/operations.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {

class DataBaseConnection {
  public:
    DataBaseConnection(SqlDatabase& db, engine::Handle handle) : db_(db), handle_(handle) {}

    engine::Handle handle() const { return handle_; }

    // Disconnects through the owner of the handle (Disconnect of the dispatch). Once done, or
    // for a connection of 0, it answers AE_INVALID_CONNECTION_HANDLE and calls nothing.
    [[nodiscard]] engine::Status disconnect();

  private:
    SqlDatabase& db_;
    engine::Handle handle_;
};

}  // namespace fnrk::tables
