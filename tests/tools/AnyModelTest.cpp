// Random models, however incomplete, given to all that reads or writes one.

#include "ModelOperations.h"
#include "Shrinking.h"
#include "Sqlite.h"
#include "TemporaryFolder.h"
#include "WriterChecks.h"
#include "database/ModelBuilder.h"
#include "kit/Numbering.h"
#include "kit/TreePrinter.h"
#include "sqlite/SqliteDatabase.h"
#include "sqlite/StructureReader.h"

#include <gtest/gtest.h>
#include <qor/QORModel.h>

#include <random>

namespace {

unsigned numberFrom(char const* variable, unsigned otherwise) {
    char const* const text = std::getenv(variable);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

ByteVector randomBytes(unsigned seed, std::size_t mostOperations) {
    std::mt19937 random(seed);
    ByteVector bytes((1 + random() % mostOperations) * ModelOperations::bytesOfOne);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

using Begin = std::function<void(ModelOperations&)>;

std::vector<std::string> faultsOf(ByteVector const& input, Begin const& begin, std::string* tree = nullptr) {
    ModelOperations operations;
    begin(operations);
    Bytes bytes(input.data(), input.size());
    operations.run(bytes);
    std::vector<std::string> faults = writerFaults(operations.model());
    if (tree) {
        kit::Numbering const numbering(operations.model());
        for (QORObject* object : numbering.objects()) {
            tree->append(kit::lineOf(*object)).append("\n");
        }
    }
    return faults;
}

/// What fails in the smallest model like one that fails, and that model; empty if none does.
std::string smallestFailure(unsigned runs, std::size_t mostOperations, Begin const& begin) {
    unsigned const seed = numberFrom("QOR_RANDOM_SEED", 1);
    runs *= numberFrom("QOR_RANDOM_STEPS", 1);
    for (unsigned i = 0; i < runs; ++i) {
        ByteVector const bytes = randomBytes(seed + i, mostOperations);
        if (faultsOf(bytes, begin).empty()) {
            continue;
        }
        ByteVector const least = shrunk(bytes, ModelOperations::bytesOfOne, [&](ByteVector const& shorter) {
            return !faultsOf(shorter, begin).empty();
        });
        std::string tree;
        std::string text = "seed " + std::to_string(seed + i) + ": ";
        text += faultsOf(least, begin, &tree).front();
        return text + "\n" + tree;
    }
    return "";
}

TEST(AnyModel, GivesTextsThatHoldWhateverItLacks) {
    EXPECT_EQ(smallestFailure(400, 300, [](ModelOperations&) {}), "");
}

/// A model as it comes from a database.
void beginWith(std::string const& sql, ModelOperations& operations) {
    TemporaryFolder const folder;
    sqlite::Database database(makeDatabase(folder.file("a.sqlite"), sql));
    operations.adopt(*database::buildModel(sqlite::readStructure(database)).release());
}

TEST(AnyModel, OfADatabaseGivesTextsThatHoldWhateverIsTakenAway) {
    std::string const sql = contentOf(QOR_SOURCE_DIR "/samples/orchard.sql");
    EXPECT_EQ(smallestFailure(60, 60, [&](ModelOperations& operations) { beginWith(sql, operations); }), "");
}

} // namespace
