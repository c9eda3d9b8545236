// Random models, however incomplete, given to all that reads or writes one.

#include "RandomModels.h"
#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "WriterChecks.h"
#include "database/ModelBuilder.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <gmock/gmock.h>
#include <qor/QORModel.h>

namespace {

using testing::HasSubstr;

TEST(AnyModel, GivesTextsThatHoldWhateverItLacks) {
    RandomModels models;
    models.faultsOf = writerFaults;
    models.runs = 300;
    EXPECT_EQ(smallestFailure(models), "");
}

/// The model that a database becomes.
std::function<void(ModelOperations&)> modelOf(std::string const& sql) {
    return [sql](ModelOperations& operations) {
        TemporaryFolder const folder;
        sqlite::Database database(makeDatabase(folder.file("a.sqlite"), sql));
        operations.adopt(*database::buildModel(sqlite::readStructure(database)).release());
    };
}

TEST(AnyModel, OfADatabaseGivesTextsThatHoldWhateverIsTakenAwayOrAdded) {
    for (ModelOperations::Kind const kind : {ModelOperations::Kind::TAKING, ModelOperations::Kind::ANY}) {
        RandomModels models;
        models.kind = kind;
        models.begin = modelOf(contentOf(QOR_SOURCE_DIR "/samples/orchard.sql"));
        models.faultsOf = writerFaults;
        models.runs = 20;
        models.mostOperations = 60;
        EXPECT_EQ(smallestFailure(models), "");
    }
}

} // namespace
