#pragma once

#include "database/Structure.h"

/// Table `t` of the columns x and y with the primary key (y, x), and table `u` of the columns p and q with
/// the foreign key (q, p), which refers to (y, x).
inline database::Structure crossedKeys() {
    using namespace database;
    Structure all;
    all.catalog.name = "shop";
    all.schemas.resize(1);
    all.schemas[0].name = "main";
    char const* const names[] = {"t", "u"};
    char const* const columns[][2] = {{"x", "y"}, {"p", "q"}};
    for (std::size_t i = 0; i < 2; ++i) {
        Table table;
        table.name = names[i];
        table.nativeKind = "TABLE";
        table.schema = 0;
        for (char const* name : columns[i]) {
            table.columns.emplace_back();
            table.columns.back().name = name;
        }
        all.tables.push_back(table);
    }
    Key primary;
    primary.table = 0;
    primary.columns = {1, 0};
    Key foreign;
    foreign.name = "crossed";
    foreign.kind = KeyKind::FOREIGN;
    foreign.table = 1;
    foreign.columns = {1, 0};
    foreign.referredTable = 0;
    foreign.referredColumns = {1, 0};
    all.keys = {primary, foreign};
    return all;
}
