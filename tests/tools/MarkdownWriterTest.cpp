#include "documents/MarkdownWriter.h"

#include "CrossedKeys.h"
#include "NastyNames.h"
#include "database/ModelBuilder.h"
#include "database/ModelReader.h"
#include "sqlite/SqliteDialect.h"

#include <qor/QORAliasFeature.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORIndex.h>
#include <qor/QORIndexMember.h>

#include <gmock/gmock.h>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(MarkdownWriter, NameHasNoMeaningOfItsOwn) {
    Nasty const nasty;
    std::ostringstream out;
    documents::writeMarkdown(*nasty.model, out);
    std::istringstream lines(out.str());
    std::size_t rows = 0;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(line, Not(HasSubstr("\r")));
        for (std::size_t place = line.find('<'); place != std::string::npos;
             place = line.find('<', place + 1)) {
            EXPECT_TRUE(place > 0 && line[place - 1] == '\\') << line;
        }
        if (line.compare(0, 2, "| ") != 0 || line.compare(0, 5, "| ---") == 0 ||
            line.compare(0, 8, "| Column") == 0) {
            continue;
        }
        // Five cells, whatever is in them: a bar or backslash that isn't escaped would make other ones.
        std::size_t bars = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '\\') {
                ++i;
            } else {
                bars += line[i] == '|';
            }
        }
        EXPECT_EQ(bars, 6u) << line;
        ++rows;
    }
    EXPECT_EQ(rows, nastyNames.size());
}

TEST(MarkdownWriter, ColumnsOfAKeyStandInTheOrderOfTheKeyAsInSql) {
    auto const model = database::buildModel(crossedKeys());
    std::ostringstream page;
    documents::writeMarkdown(*model, page);
    EXPECT_THAT(page.str(), HasSubstr("- Primary key: y, x\n"));
    EXPECT_THAT(page.str(), HasSubstr("- Foreign key crossed: q, p to t (y, x)\n"));
    std::ostringstream sql;
    sqlite::sqliteDialect().write(database::readModel(*model), &sqlite::sqliteDialect(), sql);
    EXPECT_THAT(sql.str(), HasSubstr("CONSTRAINT crossed FOREIGN KEY (q, p) REFERENCES t(y, x)"));
}

TEST(MarkdownWriter, UnnamedKeysStandInTheOrderOfTheTable) {
    database::Structure structure = crossedKeys();
    structure.keepsKeyOrder = true;
    database::Key single = structure.keys.back();
    single.name = "";
    structure.keys.pop_back();
    for (int const column : {1, 0}) {
        single.columns = {column};
        single.referredColumns = {column};
        structure.keys.push_back(single);
    }
    auto const model = database::buildModel(structure);
    std::ostringstream page;
    documents::writeMarkdown(*model, page);
    EXPECT_THAT(page.str(), HasSubstr("- Foreign key: q to t (y)\n- Foreign key: p to t (x)\n"));
}

TEST(MarkdownWriter, NamesAColumnOfAnotherTableInAKeyAndAnIndex) {
    QORModel model;
    auto* const package = new QORDesignPackage;
    auto* const base = new QORClass;
    auto* const table = new QORClass;
    auto* const column = new QORAttribute;
    auto* const key = new QORCandidateKey;
    auto* const index = new QORIndex;
    auto* const member = new QORIndexMember;
    model.addChildPackage(package);
    base->setName("base");
    package->addModelElement(base);
    package->addModelElement(table);
    column->setName("a_b");
    base->addFeature(column);
    table->addKey(key);
    key->addAttribute(column);
    table->addIndex(index);
    index->addIndexMember(member);
    member->addAttribute(column);
    std::ostringstream page;
    documents::writeMarkdown(model, page);
    EXPECT_THAT(page.str(), HasSubstr("- Unique key: a\\_b\n- Index: a\\_b\n"));
}

TEST(MarkdownWriter, AliasOfAFeatureIsNeitherOptionalNorNot) {
    QORClass table;
    auto* const alias = new QORAliasFeature;
    alias->setName("f");
    table.addFeature(alias);
    std::ostringstream page;
    documents::writeMarkdown(table, page);
    EXPECT_THAT(page.str(), HasSubstr("| f |  |  |  |  |\n"));
}

} // namespace
