#include "tables/shared_tables.hpp"

#include <memory>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "session/api_ini.hpp"
#include "tables/ads_users_locator.hpp"

namespace fnrk::tables {
namespace {

struct SharedDispatch {
    engine::Engine engine;
    SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
};

// The process's table access owns the users table, and so tells the process's configuration
// object where it is.
struct SharedAccess {
    SharedAccess() { session::SharedApiIni().UsersTableFrom(&locator); }
    ~SharedAccess() { session::SharedApiIni().UsersTableFrom(nullptr); }
    AdsClass ads{SharedSqlDatabase()};
    AdsUsersTableLocator locator{ads};
};

SharedDispatch& Dispatch() {
    static SharedDispatch dispatch;
    return dispatch;
}

}  // namespace

SqlDatabase& SharedSqlDatabase() {
    return Dispatch().db;
}

engine::Engine& SharedEngine() {
    return Dispatch().engine;
}

AdsClass& SharedAdsClass() {
    static SharedAccess access;
    return access.ads;
}

}  // namespace fnrk::tables
