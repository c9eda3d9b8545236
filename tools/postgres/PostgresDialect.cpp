#include "postgres/PostgresDialect.h"

#include "database/Writable.h"
#include "postgres/SqlComments.h"
#include "postgres/SqlWriter.h"

namespace postgres {
namespace {

using namespace database;

/// What the server requires of every structure.
Rules commonRules() {
    Rules rules;
    rules.emptyTables = true;
    rules.utf8 = true;
    rules.defaultSchema = "public";
    return rules;
}

class PostgresDialect : public Dialect {
public:
    char const* name() const override { return "postgresql"; }
    char const* system() const override { return "PostgreSQL"; }

private:
    Omissions writeOwn(Structure const& structure, std::ostream& out) const override {
        Rules rules = commonRules();
        rules.strict = true;
        rules.typesNeeded = true;
        Writable const whole = writable(withCommentsEnded(structure), rules);
        return OwnWriter(whole.structure, out).run(whole.omissions);
    }

    /// What other systems have is made to fit, so that the rules aren't strict.
    Omissions translate(Structure const& structure, Habits const& from, std::ostream& out) const override {
        Rules rules = commonRules();
        rules.typesNeeded = !from.untypedColumns;
        rules.comparesTypes = true;
        rules.brackets = from.brackets;
        Writable const whole = writable(structure, rules);
        ForeignStructure const translated = translateStructure(whole.structure, from);
        return TranslatedWriter(translated, out).run(whole.omissions);
    }
};

} // namespace

Dialect const& postgresDialect() {
    static PostgresDialect const dialect;
    return dialect;
}

} // namespace postgres
