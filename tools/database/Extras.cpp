#include "database/Extras.h"

#include "kit/Text.h"

#include <algorithm>

namespace database {
namespace {

bool fits(ExtraFact const& fact, std::string_view name) {
    bool const isBeginning = fact.name.back() == ' ';
    return name == fact.name || (isBeginning && name.substr(0, fact.name.size()) == fact.name);
}

} // namespace

ExtraFacts sharedExtras() {
    return {
        {extra::generated, "", {"Attribute"}, "VIRTUAL or STORED"},
        {extra::collation, "", {"Attribute", "IndexMember"}, "its name"},
        {extra::deferrable, "", {"CandidateKey", "ForeignKey"}, "INITIALLY DEFERRED or INITIALLY IMMEDIATE"},
        {extra::match, "", {"ForeignKey"}, "FULL or PARTIAL"},
        {extra::references,
         "",
         {"ForeignKey"},
         "the text after REFERENCES, if the database lacks a part of what it names"},
        {extra::position, "", {"AssociationRoleNameMap"}, "the position of the pair, if there are several"},
        {extra::position,
         "",
         {"CandidateKey", "ForeignKey", "BusinessRule"},
         "the position among the keys, foreign keys or checks of the table, if the order is significant and "
         "isn't that of kind, name and columns"},
        {extra::where, "", {"Index"}, "the condition of a partial index"},
        {extra::expression, "", {"IndexMember"}, "the expression of a member that isn't a column"},
        {extra::index,
         "",
         {"SQLViewEntity"},
         "an index of a materialized view, as JSON: an SQLViewEntity owns no indexes"},
        {extra::notNull, "", {"DerivedType"}, "`true` for a domain declared so"},
    };
}

bool isKnownExtra(ExtraFacts const& facts, std::string_view name, std::string_view owner) {
    return std::any_of(facts.begin(), facts.end(), [&](ExtraFact const& fact) {
        bool const isOwner = std::find(fact.owners.begin(), fact.owners.end(), owner) != fact.owners.end();
        return isOwner && fits(fact, name);
    });
}

std::string tableOf(ExtraFacts const& facts) {
    std::string table = "| Property | On | Value |\n| --- | --- | --- |\n";
    for (ExtraFact const& fact : facts) {
        std::string const owners = kit::joined({fact.owners.begin(), fact.owners.end()}, ", ");
        table.append("| `").append(fact.name).append(fact.rest).append("` | ").append(owners);
        table.append(" | ").append(fact.meaning).append(" |\n");
    }
    return table;
}

} // namespace database
