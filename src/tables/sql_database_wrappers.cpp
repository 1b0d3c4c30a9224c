// The routing wrappers, expanded from the operation list: each sends the call, unchanged, to
// the engine or to the backend that its route names. Connects, kept settings and gathered
// answers are written in sql_database.cpp.

#include "tables/sql_database.hpp"

namespace fnrk::tables {

using engine::Handle;
using engine::Status;

#define FNRK_BY_HANDLE(name, handle, parameters, arguments)                             \
    Status SqlDatabase::name parameters {                                               \
        return Routed(handle, [&](engine::Operations& o) { return o.name arguments; }); \
    }
#define FNRK_BY_NAME(name, handle, path, parameters, arguments)                       \
    Status SqlDatabase::name parameters {                                             \
        return RoutedByName(handle, path,                                             \
                            [&](engine::Operations& o) { return o.name arguments; }); \
    }
#define FNRK_BROADCAST(name, parameters, arguments)                                \
    Status SqlDatabase::name parameters {                                          \
        return Broadcast([&](engine::Operations& o) { return o.name arguments; }); \
    }
#define FNRK_ENGINE_ONLY(name, parameters, arguments) \
    Status SqlDatabase::name parameters {             \
        return engine_.name arguments;                \
    }
// The other routes are written by hand.
#define FNRK_OPERATION(name, parameters, arguments)
#include "engine/operations.def"

}  // namespace fnrk::tables
