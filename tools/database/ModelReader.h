#pragma once

#include "database/Structure.h"
#include "kit/Numbering.h"

#include <vector>

class QORModel;
class QORObject;

namespace database {

/// Returns the structure of a database from a model, one of `buildModel` or any other: each class is
/// a table, each SQL view a view. What a database can't express is omitted. Equal models produce equal
/// structures: the records are sorted by name wherever the model keeps no other order.
Structure readModel(QORModel& model);

/// The structure of a graph as a document shows it, and the objects that its records are made of.
struct DocumentStructure {
    Structure structure;
    std::vector<QORObject*> tables; ///< the objects of structure.tables
    std::vector<QORObject*> keys;   ///< the objects of structure.keys
};

/// Returns the tables, keys and indexes of any graph for a document. Every classifier is a table, whatever
/// its class, in the order of its number, and all names are the logical ones. The catalog has the name of the
/// root. A record has these extras where a database couldn't have the like.
DocumentStructure readDocument(kit::Numbering const& graph);

/// Of a column: it has neither a default nor the property of being optional.
constexpr char const* withoutValue = "without value";

/// Of a key: the name of a column, one for each, if any of them belongs to another table. Of a member of an
/// index: the name of its column, if that belongs to another table.
constexpr char const* columnName = "column";

} // namespace database
