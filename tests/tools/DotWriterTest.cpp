#include "exchange/DotWriter.h"

#include "EveryRecord.h"
#include "database/ModelBuilder.h"

#include <qor/QORModel.h>

#include <gtest/gtest.h>
#include <sstream>

namespace {

int countOf(std::string const& text, std::string const& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(DotWriter, ForeignKeyAndItsAssociationAreOneArrow) {
    std::ostringstream out;
    exchange::writeDot(*database::buildModel(everyRecord()), out);
    EXPECT_EQ(countOf(out.str(), "[label=\"special_other\", arrowhead=normal]"), 1) << out.str();
    EXPECT_EQ(countOf(out.str(), "label=\"special_other\""), 1);
}

TEST(DotWriter, AssociationWhoseForeignKeyRefersToNoKeyIsALine) {
    std::ostringstream out;
    exchange::writeDot(*database::buildModel(everyRecord()), out);
    EXPECT_EQ(countOf(out.str(), "[label=\"half\", dir=none]"), 1) << out.str();
}

} // namespace
