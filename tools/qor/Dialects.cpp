#include "qor/Dialects.h"

#include "postgres/PostgresDialect.h"
#include "sqlite/SqliteDialect.h"

namespace qorprogram {

/// A further dialect is one more line.
database::Dialects const& dialects() {
    static database::Dialects const all({
        &sqlite::sqliteDialect(),
        &postgres::postgresDialect(),
    });
    return all;
}

} // namespace qorprogram
