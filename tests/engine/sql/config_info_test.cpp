// The configuration record counts what the engine holds: connections, open tables (cursors
// included), index orders and record locks; everything a server would add stays zero.

#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

TEST_F(SqlTest, ConfigurationRecordCountsOpenTablesOrdersAndLocks) {
    CopyFixture("people", "USERS");
    CopyFixture("SOC1_MSODA", "MSODA");
    MgmtConfig config;
    ASSERT_EQ(engine.MgGetConfigInfo(0, config), AE_SUCCESS);
    EXPECT_EQ(config.lNumConnections, 1);
    EXPECT_EQ(config.lNumTables, 0);

    const Handle users = Open("USERS");
    Open("MSODA");
    ASSERT_EQ(engine.LockRecord(users, 2), AE_SUCCESS);
    ASSERT_EQ(engine.LockRecord(users, 3), AE_SUCCESS);
    Query("select NAME from USERS where AMOUNT > 0");
    ASSERT_EQ(engine.MgGetConfigInfo(0, config), AE_SUCCESS);
    EXPECT_EQ(config.lNumTables, 3);
    EXPECT_EQ(config.lNumWorkAreas, 3);
    EXPECT_EQ(config.lNumIndexes, 9 + 2);  // the tags of both fixture indexes
    EXPECT_EQ(config.lNumLocks, 2);
    EXPECT_EQ(config.ulTableMem, 0U);
    EXPECT_EQ(config.usNumWorkerThreads, 0);
    EXPECT_EQ(config.aucErLog, "");
}

}  // namespace
}  // namespace fnrk::engine
