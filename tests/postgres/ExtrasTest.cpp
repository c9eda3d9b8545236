#include "postgres/Extras.h"

#include "../tools/UsedExtras.h"
#include "PostgresServer.h"
#include "TemporaryFolder.h"
#include "postgres/Connection.h"
#include "postgres/StructureReader.h"

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

void addExtrasOf(std::string const& sql, std::set<UsedExtra>& used) {
    PostgresServer& server = PostgresServer::instance();
    postgres::Connection connection(server.url(server.makeDatabase(sql)));
    used.merge(usedExtras(*database::buildModel(postgres::readStructure(connection))));
}

/// What the sample databases lack.
constexpr char const* rarities = R"(
    CREATE MATERIALIZED VIEW m AS SELECT 1 AS a, 'x'::text AS b;
    ALTER MATERIALIZED VIEW m ALTER b SET COMPRESSION pglz;
    ALTER TABLE m REPLICA IDENTITY FULL;
    CREATE TABLE t(a int PRIMARY KEY, b int REFERENCES t, c int UNIQUE DEFERRABLE);
    ALTER TABLE t DISABLE TRIGGER ALL;
    ALTER INDEX t_pkey DEPENDS ON EXTENSION plpgsql;
    CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN NULL; END';
    CREATE CONSTRAINT TRIGGER g AFTER INSERT ON t FOR EACH ROW EXECUTE FUNCTION f();
    COMMENT ON CONSTRAINT g ON t IS 'of a trigger';
    CREATE SCHEMA ofExtension; ALTER EXTENSION plpgsql ADD SCHEMA ofExtension;
    CREATE TABLE ofExtension.p(a int PRIMARY KEY); ALTER EXTENSION plpgsql ADD TABLE ofExtension.p;
    CREATE TABLE child(b int REFERENCES ofExtension.p) INHERITS (ofExtension.p);
    CREATE SUBSCRIPTION s CONNECTION '' PUBLICATION p WITH (connect = false);)";

TEST(PostgresExtras, ThoseOfTheSampleDatabasesAreKnown) {
    std::set<UsedExtra> used;
    for (char const* const file :
         {"samples/harbour.sql", "tests/postgres/tables.sql", "tests/postgres/catalog.sql",
          "tests/postgres/extensions.sql", "tests/postgres/forms.sql"}) {
        addExtrasOf(contentOf(std::string(QOR_SOURCE_DIR "/") + file), used);
    }
    addExtrasOf(rarities, used);
    database::ExtraFacts facts = database::sharedExtras();
    database::ExtraFacts const own = postgres::extraFacts();
    facts.insert(facts.end(), own.begin(), own.end());
    EXPECT_THAT(unknownExtras(facts, used), IsEmpty());
    EXPECT_THAT(unusedExtras(facts, used),
                UnorderedElementsAre(
                    "position of CandidateKey", "position of ForeignKey", "position of BusinessRule",
                    "security label of  of DatabaseCatalog", "detach pending of Class", "tablespace of Class",
                    "tablespace of SQLViewEntity", "tablespace of Index", "tablespace of CandidateKey"))
        << "which need another system or server";
}

} // namespace
