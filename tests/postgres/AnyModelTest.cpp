// Random models, however incomplete, as SQL that a server runs.

#include "PostgresServer.h"
#include "RandomModels.h"
#include "WriterChecks.h"
#include "database/ModelBuilder.h"
#include "postgres/Connection.h"
#include "postgres/StructureReader.h"

#include <gtest/gtest.h>
#include <qor/QORModel.h>

namespace {

using Faults = std::vector<std::string>;

/// What the server says against the SQL of a model; nothing of it stays.
Faults serverFaults(QORModel& model) {
    static std::string const database = PostgresServer::instance().makeDatabase();
    std::string const sql = sqlOf(model, "postgresql");
    try {
        PostgresServer::instance().run(database, "BEGIN;\n" + sql + ";\nROLLBACK");
    } catch (std::runtime_error const& error) {
        return {error.what(), sql};
    }
    return {};
}

TEST(AnyModel, GivesSqlThatTheServerTakesWhateverItLacks) {
    RandomModels models;
    models.kind = ModelOperations::Kind::PLAIN;
    models.faultsOf = serverFaults;
    models.runs = 100;
    EXPECT_EQ(smallestFailure(models), "");
}

/// All kinds of things, but none that says in SQL what it needs.
constexpr char const* things = R"(
    CREATE SCHEMA stock;
    CREATE TYPE grade AS ENUM ('a', 'b');
    CREATE DOMAIN stock.word AS varchar(20) NOT NULL;
    CREATE DOMAIN words AS stock.word;
    CREATE SEQUENCE counter;
    CREATE TABLE kind(id int PRIMARY KEY, mark grade, name words, UNIQUE (name, mark));
    CREATE TABLE stock.item(id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, kind int REFERENCES kind,
        name stock.word, mark grade, FOREIGN KEY (name, mark) REFERENCES kind (name, mark) ON DELETE CASCADE);
    CREATE TABLE stock.part(item bigint REFERENCES stock.item, number int, size numeric(8,2), PRIMARY KEY (item, number));
    CREATE INDEX ON stock.part (size DESC, number);
    CREATE UNIQUE INDEX by_name ON stock.item (name) INCLUDE (mark);
    CREATE TABLE special(note text) INHERITS (kind);
    COMMENT ON TABLE kind IS 'kinds'; COMMENT ON COLUMN kind.name IS 'names'; COMMENT ON TYPE grade IS 'grades';
    COMMENT ON INDEX stock.by_name IS 'index'; COMMENT ON CONSTRAINT kind_pkey ON kind IS 'key';)";

TEST(AnyModel, OfADatabaseGivesSqlThatTheServerTakesWhateverIsTakenAway) {
    std::string const name = PostgresServer::instance().makeDatabase(things);
    RandomModels models;
    models.kind = ModelOperations::Kind::TAKING;
    models.begin = [&](ModelOperations& operations) {
        postgres::Connection connection(PostgresServer::instance().url(name));
        operations.adopt(*database::buildModel(postgres::readStructure(connection)).release());
    };
    models.faultsOf = serverFaults;
    models.runs = 20;
    models.mostOperations = 40;
    EXPECT_EQ(smallestFailure(models), "");
}

} // namespace
