#include "postgres/CatalogReader.h"

#include <iterator>
#include <utility>

namespace postgres {
namespace {

using database::Extras;
using database::Sequence;

constexpr std::pair<char const*, char const*> options[] = {
    {"type", "AS"},          {"start", "START WITH"}, {"increment", "INCREMENT BY"},
    {"minimum", "MINVALUE"}, {"maximum", "MAXVALUE"}, {"cache", "CACHE"},
    {"cycle", "CYCLE"}};
constexpr int firstOption = 2;

/// What isn't as CREATE SEQUENCE would have it by itself, one column for each of the options.
constexpr char const* optionColumns =
    " LATERAL (SELECT CASE s.seqtypid WHEN 21 THEN 32767 WHEN 23 THEN 2147483647"
    "   ELSE 9223372036854775807 END AS highest) AS h,"
    " LATERAL (SELECT CASE WHEN s.seqincrement > 0 THEN 1 ELSE -highest - 1 END AS lower,"
    "   CASE WHEN s.seqincrement > 0 THEN highest ELSE -1 END AS upper) AS b,"
    " LATERAL (SELECT CASE WHEN s.seqtypid <> 20 THEN format_type(s.seqtypid, NULL) END,"
    "   nullif(s.seqstart, CASE WHEN s.seqincrement > 0 THEN s.seqmin ELSE s.seqmax END),"
    "   nullif(s.seqincrement, 1), nullif(s.seqmin, lower), nullif(s.seqmax, upper),"
    "   nullif(s.seqcache, 1), CASE WHEN s.seqcycle THEN 'true' END) AS x";

/// An identity column can't say that its sequence has another type than itself, as one has that was made by
/// LIKE. Then the sequence is altered afterwards, everything included since the type brings limits of its
/// own.
std::string changesOfIdentity() {
    return "concat_ws(E';\\n', CASE WHEN s.seqtypid <> oa.atttypid THEN format('ALTER SEQUENCE %s AS %s "
           "START WITH"
           " %s INCREMENT BY %s MINVALUE %s MAXVALUE %s CACHE %s %sCYCLE RESTART', c.oid::regclass,"
           " format_type(s.seqtypid, NULL), s.seqstart, s.seqincrement, s.seqmin, s.seqmax, s.seqcache,"
           " CASE WHEN NOT s.seqcycle THEN 'NO ' END) END,"
           " 'COMMENT ON SEQUENCE ' || c.oid::regclass || ' IS ' || quote_literal(" +
           commentOn("pg_class", "c.oid") + "))";
}

/// The options behind AS IDENTITY. The type is that of the column.
std::string identityWords(Query const& row, std::string const& name, bool hasOptions) {
    std::string words = name;
    for (int i = 1; hasOptions && i < static_cast<int>(std::size(options)); ++i) {
        std::string const value = row.text(firstOption + i);
        if (!value.empty()) {
            words.append(words.empty() ? "" : " ").append(options[i].second);
            words.append(value == "true" ? "" : " " + value);
        }
    }
    return words;
}

} // namespace

/// A sequence that an identity column made is part of it.
void CatalogReader::readSequences() {
    Query row(connection,
              "SELECT c.relname, c.relnamespace, x.*, e.refobjid, e.refobjsubid, e.deptype = 'i', " +
                  commentOn("pg_class", "c.oid") +
                  ", CASE WHEN e.deptype = 'i' AND (c.relname <> o.relname || '_' || oa.attname || '_seq'"
                  " OR c.relnamespace <> o.relnamespace)"
                  " THEN format('SEQUENCE NAME %s', c.oid::regclass) END"
                  ", CASE WHEN e.deptype = 'a' THEN format('%s.%I', o.oid::regclass, oa.attname) END"
                  ", c.relpersistence = 'u', s.seqtypid = oa.atttypid, " +
                  changesOfIdentity() +
                  " FROM pg_class AS c JOIN pg_sequence AS s ON s.seqrelid = c.oid"
                  " LEFT JOIN pg_depend AS e ON e.classid = 'pg_class'::regclass AND e.objid = c.oid"
                  " AND e.refclassid = 'pg_class'::regclass AND e.refobjsubid > 0 AND e.deptype IN ('a', 'i')"
                  " LEFT JOIN pg_class AS o ON o.oid = e.refobjid"
                  " LEFT JOIN pg_attribute AS oa ON oa.attrelid = o.oid AND oa.attnum = e.refobjsubid," +
                  optionColumns + " WHERE" + isOwn("pg_class", "c.oid", "c.relnamespace") + "ORDER BY c.oid");
    while (row.next()) {
        if (row.flag(11)) {
            readIdentity(row);
            continue;
        }
        Sequence sequence;
        for (int i = 0; i < static_cast<int>(std::size(options)); ++i) {
            addExtra(sequence.extras, options[i].first, row.text(firstOption + i));
        }
        sequence.name = row.text(0);
        sequence.schema = schemaOf(row.number(1));
        sequence.comment = row.text(12);
        addExtra(sequence.extras, "owned by", row.text(14));
        addFlag(sequence.extras, "unlogged", row.flag(15));
        structure.sequences.push_back(std::move(sequence));
    }
}

void CatalogReader::readIdentity(Query const& row) {
    int const table = tableOf(row.number(9));
    int const column = table < 0 ? -1 : columnOf(table, static_cast<int>(row.number(10)));
    if (column < 0) {
        return;
    }
    Extras& extras =
        structure.tables[static_cast<std::size_t>(table)].columns[static_cast<std::size_t>(column)].extras;
    addExtra(extras, "identity sequence", identityWords(row, row.text(13), row.flag(16)));
    addExtra(extras, "identity changes", row.text(17));
}

} // namespace postgres
