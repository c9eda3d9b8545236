// A dialect of its own shows what another one needs: it stands in this file alone.

#include "database/Dialect.h"

#include "EveryRecord.h"
#include "database/ModelBuilder.h"
#include "database/Records.h"
#include "database/SqlFormat.h"
#include "database/SqlWriter.h"
#include "database/Writable.h"
#include "kit/ToolError.h"
#include "postgres/PostgresDialect.h"
#include "sqlite/SqliteDialect.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <qor/QORModel.h>
#include <sstream>

namespace {

using database::at;
using database::Omissions;
using database::Structure;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// ---- the dialect -------------------------------------------------------------------------------------

/// A system that has tables and indexes of plain columns, two types, and names between angle brackets.
class ToyWriter : public database::SqlWriter {
public:
    using SqlWriter::SqlWriter;

protected:
    /// Of another system's SQL nothing is known to mean the same.
    virtual bool takesSql() const { return true; }

private:
    std::string quoted(std::string const& name) const override { return "<" + name + ">"; }

    std::string columnText(database::Column const& column) {
        bool const isNumber = column.type >= 0 && at(structure.types, column.type).dataType == "SQL_INTEGER";
        bool const hasDefault = takesSql() && !column.generated && !column.defaultValue.empty();
        return quoted(column.name) + (isNumber ? " NUMBER" : " WORD") +
               (hasDefault ? " DEFAULT " + column.defaultValue : "") + (column.notNull ? " NOT NULL" : "");
    }

    void writeTable(int number) {
        std::vector<std::string> parts;
        for (database::Column const& column : at(structure.tables, number).columns) {
            parts.push_back(columnText(column));
        }
        for (database::Key const* key : at(keysOfTable, number)) {
            parts.push_back(keyText(*key));
        }
        for (database::Check const* check : at(checksOfTable, number)) {
            parts.push_back(takesSql() ? checkText(check->name, check->expression) : "");
        }
        statement("MAKE TABLE " + tableName(number) + " " + partsText(parts));
    }

    void begin() override { out << "HELLO\n"; }
    void writeTables() override {
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            if (structure.tables[i].kind == database::TableKind::TABLE) {
                writeTable(static_cast<int>(i));
            }
        }
    }
    void writeIndexes() override {
        for (database::Index const& index : structure.indexes) {
            std::vector<int> columns;
            for (database::IndexMember const& member : index.members) {
                columns.push_back(member.column);
            }
            bool const isPlain = std::count(columns.begin(), columns.end(), -1) == 0;
            if (isPlain) {
                statement(indexStart(index, quoted(index.name)) + tableName(index.table) + " " +
                          columnNames(index.table, columns));
            } else {
                leftOut({"index " + index.name, "a toy has no expressions", ""});
            }
        }
    }
    void writeReferences() override {
        for (database::Table const& table : structure.tables) {
            if (table.kind != database::TableKind::TABLE) {
                leftOut({"view " + table.name, "a toy has no views", table.statement});
            }
        }
    }
    void writeTriggers() override {}
};

class TranslatingToyWriter : public ToyWriter {
public:
    using ToyWriter::ToyWriter;

private:
    bool takesSql() const override { return false; }
};

class ToyDialect : public database::Dialect {
public:
    char const* name() const override { return "toy"; }
    char const* system() const override { return "Toy"; }
    database::Habits habits() const override { return {true, true, false}; }

private:
    Omissions writeOwn(Structure const& structure, std::ostream& out) const override {
        database::Writable const whole = database::writable(structure, {});
        return ToyWriter(whole.structure, out).run(whole.omissions);
    }
    Omissions translate(Structure const& structure, database::Habits const&,
                        std::ostream& out) const override {
        database::Writable const whole = database::writable(structure, {});
        return TranslatingToyWriter(whole.structure, out).run(whole.omissions);
    }
};

// ---- how it is used ----------------------------------------------------------------------------------

ToyDialect const toy;
database::Dialects const three({&sqlite::sqliteDialect(), &postgres::postgresDialect(), &toy});

struct Exported {
    std::string sql;
    std::vector<std::string> remarks;
};

/// A structure as a model, exported as the program does.
Exported exported(Structure const& structure, std::map<std::string, std::string> const& options) {
    std::unique_ptr<QORModel> const model = database::buildModel(structure);
    std::ostringstream out;
    Exported result;
    result.remarks = database::sqlFormat(three).prepare({*model, "shop.json", options})(out);
    result.sql = out.str();
    return result;
}

database::Type typeOf(char const* name, char const* dataType) {
    database::Type type;
    type.name = type.declaration = name;
    type.dataType = dataType;
    return type;
}

/// A table of a system, with an index, a check, a default and a view.
Structure shopOf(char const* system) {
    Structure shop;
    shop.catalog.name = "shop";
    shop.origin.system = system;
    shop.schemas.resize(1);
    shop.schemas[0].name = "public";
    shop.types = {typeOf("INTEGER", "SQL_INTEGER"), typeOf("VARCHAR", "SQL_VARCHAR")};
    shop.tables.resize(2);
    shop.tables[0].schema = shop.tables[1].schema = 0;
    shop.tables[0].name = "item";
    shop.tables[0].columns.resize(2);
    shop.tables[0].columns[0].name = "id";
    shop.tables[0].columns[0].type = 0;
    shop.tables[0].columns[1].name = "label";
    shop.tables[0].columns[1].type = 1;
    shop.tables[0].columns[1].notNull = true;
    shop.tables[0].columns[1].defaultValue = "'none'";
    shop.keys.resize(1);
    shop.keys[0].name = "by_id";
    shop.keys[0].table = 0;
    shop.keys[0].columns = {0};
    shop.checks.resize(1);
    shop.checks[0].table = 0;
    shop.checks[0].expression = "id > 0";
    shop.indexes.resize(1);
    shop.indexes[0].name = "by_label";
    shop.indexes[0].table = 0;
    shop.indexes[0].members.resize(1);
    shop.indexes[0].members[0].column = 1;
    shop.tables[1].name = "v";
    shop.tables[1].kind = database::TableKind::VIEW;
    shop.tables[1].statement = "SELECT id FROM item";
    return shop;
}

TEST(Dialect, ThirdOneIsOfferedAndWritesItsOwnModels) {
    EXPECT_THAT(database::sqlFormat(three).options[0].values, ElementsAre("sqlite", "postgresql", "toy"));
    for (char const* system : {"Toy", "TOY"}) { // as a model made by hand may spell it
        EXPECT_THAT(exported(shopOf(system), {}).sql, StartsWith("HELLO\nMAKE TABLE <item>")) << system;
    }
    Exported const own = exported(shopOf("Toy"), {});
    EXPECT_EQ(own.sql, "HELLO\nMAKE TABLE <item> (\n    <id> NUMBER,\n"
                       "    <label> WORD DEFAULT 'none' NOT NULL,\n"
                       "    CONSTRAINT <by_id> PRIMARY KEY (<id>),\n    CHECK (id > 0)\n);\n"
                       "CREATE INDEX <by_label> ON <item> (<label>);\n"
                       "-- left out: view v: a toy has no views\n-- SELECT id FROM item\n");
    EXPECT_THAT(own.remarks, ElementsAre("left out: view v: a toy has no views"));
}

TEST(Dialect, ThirdOneTranslatesModelsOfOtherSystems) {
    for (char const* system : {"SQLite", "PostgreSQL", "unknown", "TOY"}) {
        std::string const sql = exported(shopOf(system), {{"dialect", "toy"}}).sql;
        EXPECT_THAT(sql, HasSubstr("    <label> WORD NOT NULL,\n"
                                   "    CONSTRAINT <by_id> PRIMARY KEY (<id>)\n);\n"))
            << system;
    }
    Exported const every = exported(everyRecord(), {{"dialect", "toy"}});
    EXPECT_THAT(every.sql, HasSubstr("FOREIGN KEY"));
    EXPECT_THAT(every.sql, HasSubstr(" REFERENCES <"));
}

TEST(Dialect, OthersTranslateModelsOfTheThirdOne) {
    EXPECT_THAT(exported(shopOf("Toy"), {{"dialect", "sqlite"}}).sql,
                HasSubstr("CREATE TABLE item (\n    id INTEGER,\n"));
    EXPECT_THAT(exported(shopOf("Toy"), {{"dialect", "postgresql"}}).sql,
                HasSubstr("CREATE TABLE public.item (\n    id integer,\n"));
}

/// The habits of the system that a structure comes from.
TEST(Dialect, OthersReadSqlOfTheThirdOneByItsHabits) {
    Structure shop = shopOf("Toy");
    shop.checks[0].expression = "[it's] > 0";
    shop.tables[0].columns[0].type = -1;
    std::string const incomplete = "the expression is empty or incomplete";
    std::string const untyped = "type of column id of item: it is unknown";
    std::string const known = exported(shop, {{"dialect", "postgresql"}}).sql;
    EXPECT_THAT(known, AllOf(Not(HasSubstr(incomplete)), Not(HasSubstr(untyped))));
    EXPECT_THAT(exported(shop, {{"dialect", "sqlite"}}).sql, Not(HasSubstr(incomplete)));
    shop.origin.system = "unknown";
    std::string const unknown = exported(shop, {{"dialect", "postgresql"}}).sql;
    EXPECT_THAT(unknown, AllOf(HasSubstr(incomplete), HasSubstr(untyped)));
    EXPECT_THAT(exported(shop, {{"dialect", "sqlite"}}).sql, HasSubstr(incomplete));
}

TEST(Dialect, OneMustBeNamedForAModelOfAnUnknownSystem) {
    for (char const* system : {"", "unknown"}) {
        try {
            exported(shopOf(system), {});
            FAIL() << system;
        } catch (kit::ToolError const& error) {
            EXPECT_STREQ(error.what(), "shop.json: comes from no known system, so --dialect must name one");
        }
    }
    EXPECT_EQ(&three.named("toy"), &toy);
    EXPECT_THROW(three.named("klingon"), kit::ToolError);
}

} // namespace
