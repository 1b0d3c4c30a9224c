#include "tables/database_connection.hpp"

#include <utility>

namespace fnrk::tables {

engine::Status DataBaseConnection::disconnect() {
    if (handle_ == 0) return engine::AE_INVALID_CONNECTION_HANDLE;
    return db_.Disconnect(std::exchange(handle_, 0));
}

}  // namespace fnrk::tables
