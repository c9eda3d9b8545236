#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::Column;

constexpr char const* columnSql = R"sql(
    SELECT a.attrelid AS table, a.attnum AS number, a.attname AS name, {type_columns}, a.attnotnull AS not_null,
        pg_get_expr(d.adbin, d.adrelid) AS default_value, a.attgenerated AS generated,
        a.attidentity AS identity, {collation} AS collation,
        CASE WHEN a.attstorage <> t.typstorage THEN a.attstorage END AS storage, {compression} AS compression,
        CASE WHEN a.attstattarget >= 0 THEN a.attstattarget END AS statistics, {options} AS options,
        {foreign_options} AS foreign_options, n.description AS comment,
        a.attinhcount > 0 AND NOT c.relispartition AS inherited, a.attislocal AS local
    FROM pg_attribute AS a JOIN pg_class AS c ON c.oid = a.attrelid
        JOIN pg_type AS t ON t.oid = a.atttypid
        LEFT JOIN pg_attrdef AS d ON d.adrelid = a.attrelid AND d.adnum = a.attnum
        LEFT JOIN pg_description AS n ON n.classoid = 'pg_class'::regclass AND n.objoid = a.attrelid
            AND n.objsubid = a.attnum
    WHERE a.attnum > 0 AND NOT a.attisdropped AND c.relkind IN ('r', 'p', 'f', 'v', 'm')
    ORDER BY a.attrelid, a.attnum)sql";

std::string columnQuery(bool hasCompression) {
    return filled(columnSql, {{"type_columns", typeColumns("a.atttypid", "a.atttypmod", "t")},
                              {"collation", otherCollation("a.attcollation", "t.typcollation")},
                              {"compression", hasCompression ? "nullif(a.attcompression, '')" : "NULL"},
                              {"options", optionsText("a.attoptions")},
                              {"foreign_options", foreignOptions("a.attfdwoptions")}});
}

struct ColumnRow : Query {
    using Query::Query;
    Number table{*this, "table"};
    Number number{*this, "number"};
    Text name{*this, "name"};
    TypeFields type{*this};
    Flag isNotNull{*this, "not_null"};
    Text defaultValue{*this, "default_value"};
    Letter generated{*this, "generated"};
    Letter identity{*this, "identity"};
    Text collation{*this, "collation"};
    Letter storage{*this, "storage"};
    Letter compression{*this, "compression"};
    Text statistics{*this, "statistics"};
    Text options{*this, "options"};
    Text foreignOptions{*this, "foreign_options"};
    Text comment{*this, "comment"};
    Flag isInherited{*this, "inherited"};
    Flag isLocal{*this, "local"};
};

char const* generatedText(char letter) {
    return !letter ? "" : letter == 'v' ? "VIRTUAL" : "STORED";
}

char const* identityText(char letter) {
    return !letter ? "" : letter == 'a' ? "ALWAYS" : "BY DEFAULT";
}

char const* storageText(char letter) {
    return !letter         ? ""
           : letter == 'p' ? "PLAIN"
           : letter == 'e' ? "EXTERNAL"
           : letter == 'm' ? "MAIN"
                           : "EXTENDED";
}

char const* compressionText(char letter) {
    return !letter ? "" : letter == 'l' ? "lz4" : "pglz";
}

Column columnOfRow(ColumnRow const& row, int type) {
    Column column;
    column.name = row.name;
    column.type = type;
    column.notNull = row.isNotNull;
    column.defaultValue = row.defaultValue;
    column.generated = row.generated != 0;
    column.comment = row.comment;
    addExtra(column.extras, extra::generated, generatedText(row.generated));
    addExtra(column.extras, extra::identity, identityText(row.identity));
    addExtra(column.extras, extra::collation, row.collation);
    addExtra(column.extras, extra::storage, storageText(row.storage));
    addExtra(column.extras, extra::compression, compressionText(row.compression));
    addExtra(column.extras, extra::statistics, row.statistics);
    addExtra(column.extras, extra::with, row.options);
    addExtra(column.extras, extra::options, row.foreignOptions);
    addExtra(column.extras, extra::inherited, inheritance(row.isInherited, row.isLocal));
    return column;
}

} // namespace

void CatalogReader::readColumns() {
    ColumnRow row(connection, columnQuery(since(140000)));
    while (row.next()) {
        int const owner = tableOf(row.table);
        if (owner < 0) {
            continue;
        }
        auto& numbers = columnsByNumber[static_cast<std::size_t>(owner)];
        auto& columns = structure.tables[static_cast<std::size_t>(owner)].columns;
        numbers.resize(static_cast<std::size_t>(row.number) + 1, -1);
        numbers.back() = static_cast<int>(columns.size());
        columns.push_back(columnOfRow(row, typeOf(row.type)));
    }
}

} // namespace postgres
