#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "PersistenceDatabases.hpp"
#include "caudalis/db/Connection.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

// The failure injection of the persistence tests creates triggers through a connection.

TEST(TriggerStatement, ATriggerWithItsBodyIsOneStatement) {
    PersistenceDatabases databases;
    Connection con(databases.projectConnection());
    con.Open();
    con.Execute(
        "create temp trigger refuse before insert on tb_drop begin select raise(abort, 'no'); "
        "select 1; end;");
    EXPECT_RAISES(con.Execute("INSERT INTO tb_drop (carta_id) VALUES (1)"), RuntimeError::DatabaseEngine);
}

TEST(TriggerStatement, AnythingAfterTheTriggersEndIsASecondStatement) {
    PersistenceDatabases databases;
    Connection con(databases.projectConnection());
    con.Open();
    EXPECT_RAISES(
        con.Execute("CREATE TRIGGER refuse BEFORE INSERT ON tb_drop BEGIN SELECT RAISE(ABORT, 'no'); END; "
                    "DELETE FROM tb_cartas"),
        3142);
    EXPECT_RAISES(con.Execute("SELECT 1; CREATE TRIGGER refuse BEFORE INSERT ON tb_drop BEGIN SELECT 1; END"),
                  3142);
    EXPECT_TRUE(databases.projectRows("SELECT name FROM sqlite_master WHERE type='trigger'").empty());
}

}  // namespace
