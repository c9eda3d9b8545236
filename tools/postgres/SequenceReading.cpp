#include "postgres/CatalogQueries.h"
#include "postgres/CatalogReader.h"
#include "postgres/Extras.h"

#include <array>
#include <cstddef>

namespace postgres {
namespace {

using database::Extras;
using database::Sequence;

/// `b` holds the limits that CREATE SEQUENCE sets by itself, and what isn't as it would have it by itself is
/// an option.
constexpr char const* sequenceSql = R"sql(
    SELECT c.relname AS name, c.relnamespace AS schema,
        CASE WHEN s.seqtypid <> 20 THEN format_type(s.seqtypid, NULL) END AS type,
        nullif(s.seqstart, CASE WHEN s.seqincrement > 0 THEN s.seqmin ELSE s.seqmax END) AS start,
        nullif(s.seqincrement, 1) AS increment, nullif(s.seqmin, lower) AS minimum,
        nullif(s.seqmax, upper) AS maximum, nullif(s.seqcache, 1) AS cache,
        CASE WHEN s.seqcycle THEN 'true' END AS cycle, e.refobjid AS owner, e.refobjsubid AS owner_column,
        e.deptype = 'i' AS of_identity, {comment} AS comment,
        CASE WHEN e.deptype = 'i'
                AND (c.relname <> o.relname || '_' || oa.attname || '_seq' OR c.relnamespace <> o.relnamespace)
            THEN format('SEQUENCE NAME %s', c.oid::regclass) END AS sequence_name,
        CASE WHEN e.deptype = 'a' THEN format('%s.%I', o.oid::regclass, oa.attname) END AS owned_by,
        c.relpersistence = 'u' AS unlogged, s.seqtypid = oa.atttypid AS type_of_column,
        {identity_changes} AS identity_changes
    FROM pg_class AS c JOIN pg_sequence AS s ON s.seqrelid = c.oid
        LEFT JOIN pg_depend AS e ON e.classid = 'pg_class'::regclass AND e.objid = c.oid
            AND e.refclassid = 'pg_class'::regclass AND e.refobjsubid > 0 AND e.deptype IN ('a', 'i')
        LEFT JOIN pg_class AS o ON o.oid = e.refobjid
        LEFT JOIN pg_attribute AS oa ON oa.attrelid = o.oid AND oa.attnum = e.refobjsubid,
        LATERAL (SELECT CASE s.seqtypid WHEN 21 THEN 32767 WHEN 23 THEN 2147483647
            ELSE 9223372036854775807 END AS highest) AS h,
        LATERAL (SELECT CASE WHEN s.seqincrement > 0 THEN 1 ELSE -highest - 1 END AS lower,
            CASE WHEN s.seqincrement > 0 THEN highest ELSE -1 END AS upper) AS b
    WHERE {is_own}
    ORDER BY c.oid)sql";

/// An identity column can't say that its sequence has another type than itself, as one has that was made by
/// LIKE. Then the sequence is altered afterwards, everything included since the type brings limits of its
/// own.
constexpr char const* identityChanges = R"sql(concat_ws(E';\n',
    CASE WHEN s.seqtypid <> oa.atttypid THEN format('ALTER SEQUENCE %s AS %s START WITH %s INCREMENT BY %s '
            'MINVALUE %s MAXVALUE %s CACHE %s %sCYCLE RESTART',
        c.oid::regclass, format_type(s.seqtypid, NULL), s.seqstart, s.seqincrement, s.seqmin, s.seqmax,
        s.seqcache, CASE WHEN NOT s.seqcycle THEN 'NO ' END) END,
    'COMMENT ON SEQUENCE ' || c.oid::regclass || ' IS ' || quote_literal({comment})))sql";

std::string sequenceQuery() {
    std::string const comment = commentOn("pg_class", "c.oid");
    return filled(sequenceSql, {{"comment", comment},
                                {"identity_changes", filled(identityChanges, {{"comment", comment}})},
                                {"is_own", isOwn("pg_class", "c.oid", "c.relnamespace")}});
}

struct Option {
    char const* extra;
    char const* word; ///< of SQL
    Text value;
};

} // namespace

struct SequenceRow : Query {
    using Query::Query;
    Text name{*this, "name"};
    Number schema{*this, "schema"};
    std::array<Option, 7> options{{{extra::type, "AS", {*this, "type"}},
                                   {extra::start, "START WITH", {*this, "start"}},
                                   {extra::increment, "INCREMENT BY", {*this, "increment"}},
                                   {extra::minimum, "MINVALUE", {*this, "minimum"}},
                                   {extra::maximum, "MAXVALUE", {*this, "maximum"}},
                                   {extra::cache, "CACHE", {*this, "cache"}},
                                   {extra::cycle, "CYCLE", {*this, "cycle"}}}};
    Number owner{*this, "owner"};
    Number ownerColumn{*this, "owner_column"};
    Flag isOfIdentity{*this, "of_identity"};
    Text comment{*this, "comment"};
    Text sequenceName{*this, "sequence_name"};
    Text ownedBy{*this, "owned_by"};
    Flag isUnlogged{*this, "unlogged"};
    Flag hasTypeOfColumn{*this, "type_of_column"};
    Text identityChanges{*this, "identity_changes"};
};

namespace {

/// The options behind AS IDENTITY. The type is that of the column.
std::string identityWords(SequenceRow const& row) {
    std::string words = row.sequenceName;
    for (std::size_t i = 1; row.hasTypeOfColumn && i < row.options.size(); ++i) {
        std::string const value = row.options[i].value;
        if (!value.empty()) {
            words.append(words.empty() ? "" : " ").append(row.options[i].word);
            words.append(value == "true" ? "" : " " + value);
        }
    }
    return words;
}

} // namespace

/// A sequence that an identity column made is part of it.
void CatalogReader::readSequences() {
    SequenceRow row(connection, sequenceQuery());
    while (row.next()) {
        if (row.isOfIdentity) {
            readIdentity(row);
            continue;
        }
        Sequence sequence;
        for (Option const& option : row.options) {
            addExtra(sequence.extras, option.extra, option.value);
        }
        sequence.name = row.name;
        sequence.schema = schemaOf(row.schema);
        sequence.comment = row.comment;
        addExtra(sequence.extras, extra::ownedBy, row.ownedBy);
        addFlag(sequence.extras, extra::unlogged, row.isUnlogged);
        structure.sequences.push_back(std::move(sequence));
    }
}

void CatalogReader::readIdentity(SequenceRow const& row) {
    int const table = tableOf(row.owner);
    int const column = table < 0 ? -1 : columnOf(table, static_cast<int>(row.ownerColumn));
    if (column < 0) {
        return;
    }
    Extras& extras =
        structure.tables[static_cast<std::size_t>(table)].columns[static_cast<std::size_t>(column)].extras;
    addExtra(extras, extra::identitySequence, identityWords(row));
    addExtra(extras, extra::identityChanges, row.identityChanges);
}

} // namespace postgres
