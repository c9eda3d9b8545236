#include "exchange/TableKeys.h"

#include "kit/GraphOrder.h"

#include <qor/QORAttribute.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORForeignKey.h>

#include <Graph.h>

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

/// A table whose columns are the letters, in that order, all of them in its key.
template <class Key>
struct Table : QORClass {
    explicit Table(std::string const& letters) : key(named<Key>("key")) {
        addKey(key);
        for (char const letter : letters) {
            columns.push_back(named<QORAttribute>(std::string(1, letter).c_str()));
            columns.back()->setPosition(static_cast<short>(columns.size()));
            addFeature(columns.back());
            key->addAttribute(columns.back());
        }
    }

    Key* key;
    std::vector<QORAttribute*> columns;
};

TEST(TableKeys, ColumnsOfAReferenceGoByTheirPlaceInTheReferredKey) {
    Table<QORCandidateKey> far("xy");
    Table<QORForeignKey> near("ba");
    near.key->addCandidateKey(far.key);
    kit::GraphOrder order;
    exchange::Reference const reference = exchange::referenceOf(*near.key, order);
    EXPECT_EQ(reference.table, &far);
    ASSERT_EQ(reference.columns.size(), 2u);
    for (std::size_t i : {0u, 1u}) {
        EXPECT_EQ(reference.columns[i].first, near.columns[i]);
        EXPECT_EQ(reference.columns[i].second, far.columns[i]);
    }
}

TEST(TableKeys, ColumnsAreReferredToByNobodyWhereTheKeysDifferInLength) {
    for (char const* letters : {"x", "xyz", ""}) {
        Table<QORCandidateKey> far(letters);
        Table<QORForeignKey> near("ab");
        near.key->addCandidateKey(far.key);
        kit::GraphOrder order;
        exchange::Reference const reference = exchange::referenceOf(*near.key, order);
        EXPECT_EQ(reference.table, &far);
        ASSERT_EQ(reference.columns.size(), 2u);
        EXPECT_EQ(reference.columns[0].second, nullptr) << letters;
        EXPECT_EQ(reference.columns[1].second, nullptr) << letters;
    }
}

} // namespace
