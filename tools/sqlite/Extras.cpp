#include "sqlite/Extras.h"

namespace sqlite {

database::ExtraFacts extraFacts() {
    return {
        {extra::userVersion, "", {"DatabaseCatalog"}, "this number, unless 0"},
        {extra::applicationId, "", {"DatabaseCatalog"}, "this number, unless 0"},
        {extra::encoding, "", {"DatabaseCatalog"}, "UTF-16le or UTF-16be"},
        {extra::autoVacuum, "", {"DatabaseCatalog"}, "FULL or INCREMENTAL"},
        {extra::autoincrement, "", {"CandidateKey"}, "`true`"},
        {extra::order, "", {"CandidateKey"}, "DESC, for a primary key that is declared with its column"},
        {extra::columns,
         "",
         {"CandidateKey"},
         "the columns with their collations and directions, if they have any"},
        {extra::conflict, "", {"CandidateKey"}, "the action of ON CONFLICT"},
        {extra::conflict, "", {"Attribute"}, "the action of ON CONFLICT of its NOT NULL"},
        {extra::notNullConstraint, "", {"Attribute"}, "the name of the constraint NOT NULL"},
        {extra::defaultConstraint, "", {"Attribute"}, "the name of the constraint DEFAULT"},
        {extra::module, "", {"Class"}, "the module of a virtual table"},
        {extra::statement, "", {"Class"}, "the whole CREATE statement of a virtual table"},
        {extra::columns, "", {"Trigger"}, "the columns after UPDATE OF"},
        {extra::columns, "", {"SQLViewEntity"}, "`named`, if the view names its columns itself"},
    };
}

} // namespace sqlite
