#pragma once

#include "database/Structure.h"

class QORModel;

namespace database {

/// Returns the structure of a database from a model, one of `buildModel` or any other: each class is
/// a table, each SQL view a view. What a database can't express is omitted. Equal models produce equal
/// structures: the records are sorted by name wherever the model keeps no other order.
Structure readModel(QORModel& model);

} // namespace database
