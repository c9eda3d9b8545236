#include "postgres/Extras.h"

namespace postgres {
namespace {

using database::ExtraFacts;

constexpr char const* statements = "the statements that create it, and its comment";

ExtraFacts ofCatalogs() {
    return {
        {prefix::extension,
         "NAME",
         {"DatabaseCatalog"},
         "the statement that creates it, and its comment if it isn't the extension's own"},
        {prefix::collation, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::conversion, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::language, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::accessMethod, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::foreignDataWrapper, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::server, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::userMapping,
         "ROLE at SERVER",
         {"DatabaseCatalog"},
         "the statement that creates it, without options"},
        {prefix::cast, "(TYPE AS TYPE)", {"DatabaseCatalog"}, statements},
        {prefix::transform, "FOR TYPE LANGUAGE NAME", {"DatabaseCatalog"}, statements},
    };
}

ExtraFacts ofOperatorsAndWords() {
    return {
        {prefix::operatorItself, "NAME(TYPE,TYPE)", {"DatabaseCatalog"}, statements},
        {prefix::operatorFamily, "NAME USING METHOD", {"DatabaseCatalog"}, statements},
        {prefix::operatorClass, "NAME USING METHOD", {"DatabaseCatalog"}, statements},
        {prefix::membersOfOperatorFamily,
         "NAME USING METHOD",
         {"DatabaseCatalog"},
         "the statement that adds the members of the family that are in none of its classes"},
        {prefix::textSearchParser, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::textSearchTemplate, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::textSearchDictionary, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::textSearchConfiguration, "NAME", {"DatabaseCatalog"}, statements},
    };
}

ExtraFacts ofPublications() {
    return {
        {prefix::publication, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::eventTrigger, "NAME", {"DatabaseCatalog"}, statements},
        {prefix::commentOnType,
         "NAME",
         {"DatabaseCatalog"},
         "the statement, for types without a record: row types of tables, arrays, multiranges"},
        {prefix::subscription, "NAME", {"DatabaseCatalog"}, "its publications; the SQL doesn't create it"},
        {prefix::securityLabel,
         "PROVIDER on OBJECT",
         {"DatabaseCatalog"},
         "the label; the SQL doesn't create it"},
        {extra::extension, "", {"DatabaseSchema"}, "the extension that the schema belongs to"},
    };
}

ExtraFacts ofTypes() {
    return {
        {extra::collation, "", {"DerivedType"}, "the collation of a domain"},
        {extra::base, "", {"DerivedType"}, "the functions and settings of a base type"},
        {extra::shell, "", {"DerivedType"}, "`true` for a type that was declared and never defined"},
        {extra::attributes, "", {"DerivedType"}, "the attributes of a composite type"},
        {prefix::commentOn, "NAME", {"DerivedType"}, "the comment on an attribute of a composite type"},
        {extra::range, "", {"DerivedType"}, "the text after AS RANGE"},
    };
}

ExtraFacts ofTables() {
    constexpr char const* statement = "the statement that creates it, and its comment";
    return {
        {extra::with,
         "",
         {"Class", "SQLViewEntity", "Index", "CandidateKey"},
         "storage parameters, such as `fillfactor=70`"},
        {extra::tablespace, "", {"Class", "SQLViewEntity", "Index", "CandidateKey"}, "its name"},
        {extra::unlogged, "", {"Class"}, "`true` for such a table or sequence"},
        {extra::accessMethod, "", {"Class", "SQLViewEntity"}, "its name, unless it is heap"},
        {extra::replicaIdentity, "", {"Class", "SQLViewEntity"}, "NOTHING or FULL"},
        {extra::rowSecurity,
         "",
         {"Class"},
         "ENABLED, FORCED (which includes ENABLED) or FORCED, NOT ENABLED"},
        {extra::of, "", {"Class"}, "the composite type that a typed table is of"},
        {extra::partitionBy, "", {"Class"}, "for a partitioned table: the text after PARTITION BY"},
        {extra::partitionBound, "", {"Class"}, "for a partition: its bounds after FOR VALUES, or DEFAULT"},
        {extra::detachPending, "", {"Class"}, "`true` for a partition whose detaching isn't complete"},
        {prefix::trigger,
         "NAME",
         {"Class"},
         "for a partition: the statements that change a trigger of the partitioned table here"},
        {extra::inherits, "", {"Class"}, "a parent that belongs to an extension"},
        {extra::server, "", {"Class"}, "the server of a foreign table"},
        {extra::options, "", {"Class", "Attribute"}, "the options of a foreign table and of its columns"},
        {prefix::policy, "NAME", {"Class"}, statement},
        {prefix::rule, "NAME", {"Class", "SQLViewEntity"}, statement},
        {prefix::statistics, "NAME", {"Class", "SQLViewEntity"}, statement},
        {prefix::exclusion, "NAME", {"Class"}, statement},
        {extra::dependsOnExtension,
         "",
         {"StoredProcedure", "Trigger", "Index", "CandidateKey", "SQLViewEntity"},
         "the statements that declare it"},
    };
}

ExtraFacts ofColumns() {
    constexpr char const* setting = "as after ALTER COLUMN";
    return {
        {extra::identity, "", {"Attribute"}, "ALWAYS or BY DEFAULT"},
        {extra::identitySequence, "", {"Attribute"}, "options of its sequence"},
        {extra::identityChanges,
         "",
         {"Attribute"},
         "statements for what a column definition can't express: another type of the sequence, the comment "
         "on it"},
        {extra::collation, "", {"SQLViewAttribute"}, "its name"},
        {extra::storage, "", {"Attribute", "SQLViewAttribute"}, setting},
        {extra::compression, "", {"Attribute", "SQLViewAttribute"}, setting},
        {extra::statistics, "", {"Attribute", "SQLViewAttribute"}, setting},
        {extra::with, "", {"Attribute", "SQLViewAttribute"}, setting},
        {extra::inherited,
         "",
         {"Attribute", "ForeignKey", "BusinessRule"},
         "`true` for what only the parents of the table declare, `and own` if the table declares it too"},
    };
}

ExtraFacts ofKeysAndIndexes() {
    return {
        {extra::noInherit, "", {"BusinessRule"}, "`true`"},
        {extra::notValid, "", {"BusinessRule", "ForeignKey", "Index"}, "`true`"},
        {extra::include, "", {"CandidateKey", "Index"}, "the columns that are only stored in it"},
        {extra::nullsNotDistinct, "", {"CandidateKey", "Index"}, "`true`"},
        {extra::clustered, "", {"CandidateKey"}, "`true`"},
        {extra::replicaIdentity, "", {"CandidateKey", "Index"}, "`true`"},
        {extra::commentOnIndex, "", {"CandidateKey"}, "the comment on the index of the key"},
        {extra::partOf,
         "",
         {"CandidateKey", "Index"},
         "for a partition: the index of the partitioned table to which this index belongs"},
        {extra::onDeleteColumns, "", {"ForeignKey"}, "the columns that SET NULL or SET DEFAULT changes"},
        {extra::enabled,
         "",
         {"CandidateKey", "ForeignKey"},
         "NO, REPLICA or ALWAYS for the triggers of the key, if not all are enabled as by default"},
        {extra::method, "", {"Index"}, "unless it is btree"},
        {extra::opclass, "", {"IndexMember"}, "the operator class, if it isn't the default"},
        {extra::opclassOptions, "", {"IndexMember"}, "the options of the operator class"},
        {extra::nulls, "", {"IndexMember"}, "FIRST or LAST if it isn't the default"},
        {extra::statistics, "", {"IndexMember"}, "as after ALTER INDEX"},
    };
}

ExtraFacts ofRoutines() {
    return {
        {extra::truncate, "", {"Trigger"}, "`true` if it fires on TRUNCATE"},
        {extra::enabled, "", {"Trigger"}, "NO, REPLICA or ALWAYS"},
        {extra::commentOnConstraint, "", {"Trigger"}, "for a constraint trigger"},
        {extra::kind, "", {"StoredProcedure"}, "AGGREGATE or WINDOW"},
        {extra::language, "", {"StoredProcedure"}, "its name"},
        {extra::volatility, "", {"StoredProcedure"}, "IMMUTABLE or STABLE"},
        {extra::strict, "", {"StoredProcedure"}, "`true`"},
        {extra::securityDefiner, "", {"StoredProcedure"}, "`true`"},
        {extra::setOf, "", {"StoredProcedure"}, "`true` if it returns a set"},
    };
}

ExtraFacts ofSequences() {
    return {
        {extra::type, "", {"Class"}, "of a sequence: the type, unless it is `bigint`"},
        {extra::start, "", {"Class"}, "of a sequence: the first value"},
        {extra::increment, "", {"Class"}, "of a sequence"},
        {extra::minimum, "", {"Class"}, "of a sequence"},
        {extra::maximum, "", {"Class"}, "of a sequence"},
        {extra::cache, "", {"Class"}, "of a sequence: how many values are reserved at once"},
        {extra::cycle, "", {"Class"}, "of a sequence: `true`"},
        {extra::ownedBy, "", {"Class"}, "of a sequence: the column"},
    };
}

} // namespace

ExtraFacts extraFacts() {
    ExtraFacts facts;
    for (auto const& part : {ofCatalogs(), ofOperatorsAndWords(), ofPublications(), ofTypes(), ofTables(),
                             ofColumns(), ofKeysAndIndexes(), ofRoutines(), ofSequences()}) {
        facts.insert(facts.end(), part.begin(), part.end());
    }
    return facts;
}

} // namespace postgres
