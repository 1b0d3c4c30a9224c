#include <filesystem>

#include <gtest/gtest.h>

#include "backend/connection_target.hpp"
#include "backend/connection_xml.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::backend {
namespace {

using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

TEST(ConnectionXml, ReadsEveryItemInDocumentOrder) {
    TempDir dir;
    WriteFileBytes(dir / "users.data",
                   "<?xml version=\"1.0\"?>\n<connection>\n  <Driver>SQLite</Driver>\n"
                   "  <!-- the register -->\n  <Database>users.sqlite</Database>\n</connection>\n");
    UsersXml users;
    ASSERT_TRUE(users.Load((dir / "users.data").string())) << users.LoadError();
    EXPECT_EQ(users.GetConnectionString(), "Driver=SQLite;Database=users.sqlite");
}

TEST(ConnectionXml, RefusesMissingMalformedAndForeignFiles) {
    TempDir dir;
    OrgXml org;
    EXPECT_FALSE(org.Load((dir / "org.data").string()));
    EXPECT_NE(org.LoadError().find("cannot read"), std::string::npos);

    WriteFileBytes(dir / "broken.data", "<connection><Driver>SQLite</connection>");
    EXPECT_FALSE(org.Load((dir / "broken.data").string()));
    WriteFileBytes(dir / "other.data", "<settings><Driver>SQLite</Driver></settings>");
    EXPECT_FALSE(org.Load((dir / "other.data").string()));
    WriteFileBytes(dir / "empty.data", "<connection/>");
    EXPECT_FALSE(org.Load((dir / "empty.data").string()));
    // A value that would cut the connection string into other items.
    WriteFileBytes(dir / "sneaky.data",
                   "<connection><Database>a.sqlite;Driver=Other</Database></connection>");
    EXPECT_FALSE(org.Load((dir / "sneaky.data").string()));
    EXPECT_EQ(org.GetConnectionString(), "");

    // A good file after bad ones gives its own string only.
    WriteFileBytes(dir / "org.data", "<connection><Database>org.sqlite</Database></connection>");
    ASSERT_TRUE(org.Load((dir / "org.data").string()));
    EXPECT_EQ(org.GetConnectionString(), "Database=org.sqlite");
}

TEST(ConnectionTarget, ReadsMarkersItemsAndFolders) {
    std::string error;
    auto full =
        ParseConnectionPath("<SQL>Driver=SQLite;Database=dossier.sqlite<DIR>/data/soc1/", error);
    ASSERT_TRUE(full) << error;
    EXPECT_EQ(full->driver, "SQLite");
    EXPECT_EQ(full->folder, "/data/soc1/");
    EXPECT_EQ(full->database, "/data/soc1/dossier.sqlite");

    auto absolute = ParseConnectionPath(" database = /srv/db.sqlite ", error);
    ASSERT_TRUE(absolute) << error;
    EXPECT_EQ(absolute->database, "/srv/db.sqlite");
    EXPECT_EQ(absolute->folder, "");

    auto folder = ParseConnectionPath("/data/soc2", error);
    ASSERT_TRUE(folder) << error;
    EXPECT_EQ(folder->database, (std::filesystem::path("/data/soc2") / "fennrick.sqlite").string());

    auto server = ParseConnectionPath("Driver=PostgreSQL;Server=db;Port=5432;Database=fr", error);
    ASSERT_TRUE(server) << error;
    EXPECT_EQ(server->server, "db");
    EXPECT_EQ(server->port, "5432");
    EXPECT_EQ(server->database, "fr");  // not a file: no folder is put in front

    EXPECT_FALSE(ParseConnectionPath("Driver=SQLite;Colour=blue<DIR>/x", error));
    EXPECT_NE(error.find("Colour"), std::string::npos);
    EXPECT_FALSE(ParseConnectionPath("Driver=SQLite", error));
    EXPECT_FALSE(ParseConnectionPath("   ", error));
    // A marker after other text, and a PostgreSQL target with its schema.
    auto later = ParseConnectionPath(
        "K:\\DATA\\<SQL>Driver=PostgreSQL;Server=/run/pg;Database=office;Schema=soc1<DIR>/data/"
        "soc1",
        error);
    ASSERT_TRUE(later) << error;
    EXPECT_EQ(later->driver, "PostgreSQL");
    EXPECT_EQ(later->server, "/run/pg");
    EXPECT_EQ(later->database, "office");
    EXPECT_EQ(later->schema, "soc1");
    EXPECT_EQ(later->folder, "/data/soc1");
}

}  // namespace
}  // namespace fnrk::backend
