#include "sqlite/SqliteDialect.h"

#include "database/Writable.h"
#include "sqlite/ForeignWriter.h"
#include "sqlite/OwnWriter.h"
#include "sqlite/Requirements.h"

namespace sqlite {
namespace {

using database::Habits;
using database::Omissions;
using database::Structure;

class SqliteDialect : public database::Dialect {
public:
    char const* name() const override { return "sqlite"; }
    char const* system() const override { return "SQLite"; }
    Habits habits() const override {
        Habits own;
        own.brackets = true;
        own.untypedColumns = true;
        own.integerKeysNumberRows = true;
        return own;
    }

private:
    Omissions writeOwn(Structure const& structure, std::ostream& out) const override {
        database::Rules rules;
        rules.emptyNames = true;
        rules.ignoreCase = true;
        rules.brackets = true;
        database::Writable whole = database::writable(structure, rules);
        meetRequirements(whole);
        return OwnWriter(whole.structure, out).run(whole.omissions);
    }

    Omissions translate(Structure const& structure, Habits const& from, std::ostream& out) const override {
        database::Rules rules;
        rules.ignoreCase = true;
        rules.brackets = from.brackets;
        database::Writable const whole = database::writable(structure, rules);
        return ForeignWriter(whole.structure, out).run(whole.omissions);
    }
};

} // namespace

database::Dialect const& sqliteDialect() {
    static SqliteDialect const dialect;
    return dialect;
}

} // namespace sqlite
