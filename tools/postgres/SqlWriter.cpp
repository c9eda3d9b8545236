#include "postgres/SqlWriter.h"

#include <ostream>

namespace postgres {

void writePostgresSql(database::Structure const& structure, std::ostream& out) {
    out << "-- " << structure.catalog.name << '\n';
}

} // namespace postgres
