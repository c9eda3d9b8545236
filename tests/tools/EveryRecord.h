#pragma once

#include "database/Structure.h"

#include <string>

/// A structure of two schemas with a record of every kind, each member of which is set in one of them at
/// least.
inline database::Structure everyRecord() {
    using namespace database;
    Structure all;
    all.catalog.name = "shop";
    all.catalog.comment = "what is sold";
    all.catalog.extras = {{"collation", "de_DE"}};
    all.origin = {"PostgreSQL", "15.18", "postgresql://host/shop", "UTF8", "PostgreSQL catalog", "3"};

    Schema sales;
    sales.name = "sales";
    sales.comment = "one";
    Schema stock;
    stock.name = "stock";
    stock.extras = {{"owner", "clerk"}};
    all.schemas = {sales, stock};

    auto const addType = [&](char const* name, char const* dataType, int length, int scale) {
        Type type;
        type.name = name;
        type.declaration = name;
        type.dataType = dataType;
        type.length = length;
        type.scale = scale;
        all.types.push_back(type);
        return static_cast<int>(all.types.size()) - 1;
    };
    int const integer = addType("integer", "SQL_INTEGER", 0, 0);
    int const text = addType("character varying(40)", "SQL_VARCHAR", 40, 0);
    int const money = addType("numeric(10,2)", "SQL_NUMERIC", 10, 2);
    int const grade = addType("grade", "SQL_VARCHAR", 0, 0);
    all.types.back().schema = 0;
    all.types.back().kind = TypeKind::ENUMERATION;
    all.types.back().values = {"good", "bad", "average"};
    all.types.back().comment = "marks";
    int const email = addType("email", "SQL_VARCHAR", 40, 0);
    all.types.back().schema = 1;
    all.types.back().kind = TypeKind::DOMAIN_TYPE;
    all.types.back().base = text;
    all.types.back().notNull = true;
    all.types.back().defaultValue = "'nobody'";
    all.types.back().extras = {{"collation", "C"}};
    addType("grade", "undefined", 0, 0);
    all.types.back().schema = 1;
    all.types.back().kind = TypeKind::COMPOSITE;
    addType("span", "undefined", 0, 0);
    all.types.back().schema = 1;
    all.types.back().kind = TypeKind::RANGE;

    auto const column = [](char const* name, int type, bool notNull = false, char const* defaultValue = "") {
        Column made;
        made.name = name;
        made.type = type;
        made.notNull = notNull;
        made.defaultValue = defaultValue;
        return made;
    };
    auto const addTable = [&](char const* name, int schema, std::vector<Column> const& columns) {
        Table table;
        table.name = name;
        table.schema = schema;
        table.nativeKind = "TABLE";
        table.columns = columns;
        all.tables.push_back(table);
        return static_cast<int>(all.tables.size()) - 1;
    };
    int const customer = addTable("customer", 0,
                                  {column("id", integer, true), column("name", text, false, "'x'"),
                                   column("mail", email), column("mark", grade), column("shout", text)});
    all.tables[0].comment = "those who buy";
    all.tables[0].columns[1].comment = "as on the invoice";
    all.tables[0].columns[1].extras = {{"collation", "NOCASE"}, {"storage", "extended"}};
    all.tables[0].columns[4].generated = true;
    all.tables[0].columns[4].defaultValue = "upper(name)";
    all.tables[0].columns[4].extras = {{"generated", "STORED"}};
    int const other = addTable("customer", 1, {column("b", integer, true), column("a", integer, true)});
    all.tables[1].extras = {{"fillfactor", "70"}};
    int const special =
        addTable("special", 0, {column("id", integer), column("x", -1), column("y", integer)});
    all.tables[2].parents = {other, customer};
    all.tables[2].nativeKind = "PARTITIONED TABLE";
    int const view = addTable("v", 0, {column("n", money), column("m", text)});
    all.tables[3].kind = TableKind::VIEW;
    all.tables[3].nativeKind = "VIEW";
    all.tables[3].statement =
        "SELECT DISTINCT id, name FROM customer WHERE id > 1 GROUP BY id HAVING count(*) > 1"
        " ORDER BY name DESC LIMIT 3";
    all.tables[3].columns[0].comment = "first";
    int const kept = addTable("kept", 1, {column("n", money), column("m", text)});
    all.tables[4].kind = TableKind::MATERIALIZED_VIEW;
    all.tables[4].nativeKind = "MATERIALIZED VIEW";
    all.tables[4].statement = "SELECT 1 AS n UNION SELECT 2";
    all.tables[4].extras = {{"tablespace", "fast"}};

    auto const addKey = [&](KeyKind kind, char const* name, int table,
                            std::vector<int> const& columns) -> Key& {
        Key key;
        key.kind = kind;
        key.name = name;
        key.table = table;
        key.columns = columns;
        all.keys.push_back(key);
        return all.keys.back();
    };
    addKey(KeyKind::PRIMARY, "customer_key", customer, {0}).comment = "the number";
    addKey(KeyKind::UNIQUE, "", customer, {3, 1});
    addKey(KeyKind::UNIQUE, "", customer, {2}).extras = {{"deferrable", "INITIALLY DEFERRED"}};
    addKey(KeyKind::PRIMARY, "", other, {1, 0});
    Key& pair = addKey(KeyKind::FOREIGN, "special_other", special, {2, 0});
    pair.referredTable = other;
    pair.referredColumns = {0, 1};
    pair.onDelete = Action::CASCADE;
    pair.onUpdate = Action::SET_NULL;
    pair.extras = {{"match", "FULL"}, {"deferrable", "INITIALLY IMMEDIATE"}};
    Key& self = addKey(KeyKind::FOREIGN, "", customer, {0});
    self.referredTable = customer;
    self.referredColumns = {0};
    self.onDelete = Action::RESTRICT;
    self.onUpdate = Action::SET_DEFAULT;
    Key& noKey = addKey(KeyKind::FOREIGN, "", special, {0});
    noKey.referredTable = customer;
    noKey.referredColumns = {1};
    Key& missing = addKey(KeyKind::FOREIGN, "gone", special, {1});
    missing.extras = {{"references", "nowhere(id)"}};
    Key& unknown = addKey(KeyKind::FOREIGN, "half", special, {2, 1});
    unknown.referredTable = customer;
    unknown.extras = {{"references", "customer(no, name)"}};

    auto const addCheck = [&](char const* name, int table, int type, char const* expression) {
        Check check;
        check.name = name;
        check.table = table;
        check.type = type;
        check.expression = expression;
        all.checks.push_back(check);
    };
    addCheck("positive", customer, -1, "id > 0");
    all.checks.back().comment = "counted from one";
    addCheck("", customer, -1, "id < 1000");
    addCheck("", customer, -1, "id < 100");
    addCheck("at", -1, email, "VALUE LIKE '%@%'");

    auto const addIndex = [&](char const* name, int table) -> Index& {
        Index index;
        index.name = name;
        index.table = table;
        all.indexes.push_back(index);
        return all.indexes.back();
    };
    Index& byName = addIndex("by_name", customer);
    byName.members.resize(3);
    byName.members[0].column = 3;
    byName.members[0].descending = true;
    byName.members[0].extras = {{"collation", "C"}, {"nulls", "FIRST"}};
    byName.members[1].expression = "lower(name)";
    byName.members[2].column = 0;
    byName.unique = true;
    byName.clustered = true;
    byName.comment = "quick";
    byName.extras = {{"where", "id > 5"}, {"method", "btree"}};
    Index& ofKept = addIndex("kept_index", kept);
    ofKept.members.resize(2);
    ofKept.members[0].column = 1;
    ofKept.members[0].descending = true;
    ofKept.members[0].extras = {{"opclass", "text_ops"}};
    ofKept.members[1].expression = "n + 1";
    ofKept.unique = true;
    ofKept.extras = {{"method", "btree"}};
    ofKept.comment = "of a view";

    auto const addTrigger = [&](char const* name, int table, TriggerTime time) -> Trigger& {
        Trigger trigger;
        trigger.name = name;
        trigger.table = table;
        trigger.time = time;
        trigger.statement = std::string("CREATE TRIGGER ") + name;
        all.triggers.push_back(trigger);
        return all.triggers.back();
    };
    addTrigger("a", customer, TriggerTime::BEFORE).onInsert = true;
    Trigger& both = addTrigger("b", customer, TriggerTime::AFTER);
    both.onUpdate = both.onDelete = true;
    both.extras = {{"columns", "name"}};
    addTrigger("a", view, TriggerTime::INSTEAD_OF).onInsert = true;

    auto const addRoutine = [&](char const* name, int schema, std::vector<int> const& types) -> Routine& {
        Routine routine;
        routine.name = name;
        routine.schema = schema;
        for (int const type : types) {
            routine.arguments.emplace_back();
            routine.arguments.back().type = type;
        }
        routine.statement = std::string("CREATE FUNCTION ") + name;
        all.routines.push_back(routine);
        return all.routines.back();
    };
    addRoutine("f", 0, {integer, integer}).returnType = text;
    addRoutine("f", 0, {text}).arguments[0].defaultValue = "'x'";
    addRoutine("f", 1, {}).comment = "alone";
    Routine& table = addRoutine("g", 0, {integer, integer, text, money, integer, grade});
    table.procedure = true;
    table.extras = {{"language", "sql"}};
    char const* const names[] = {"a", "b", "", "c", "a", "rest"};
    ArgumentMode const modes[] = {ArgumentMode::IN,  ArgumentMode::OUT,           ArgumentMode::IN_OUT,
                                  ArgumentMode::OUT, ArgumentMode::RESULT_COLUMN, ArgumentMode::VARIADIC};
    for (std::size_t i = 0; i < 6; ++i) {
        table.arguments[i].name = names[i];
        table.arguments[i].mode = modes[i];
    }

    Sequence sequence;
    sequence.name = "numbers";
    sequence.schema = 1;
    sequence.comment = "counts";
    sequence.extras = {{"start", "10"}, {"increment", "5"}};
    all.sequences = {sequence};
    return all;
}
