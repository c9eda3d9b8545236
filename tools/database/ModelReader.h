#pragma once

#include "database/Structure.h"

class QORModel;

namespace database {

/// Gets the structure of a database back from a model, be it one of `buildModel` or any other: each class is
/// a table, each SQL view a view. What a database has no place for is left out. Equal models give equal
/// structures: the records stand in the order of their names wherever the model keeps no other.
Structure readModel(QORModel& model);

} // namespace database
