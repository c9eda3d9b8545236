#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

namespace database {

/// What a system takes, where systems differ.
struct Rules {
    bool emptyNames = false;     ///< a table or column may be called ""
    bool ignoreCase = false;     ///< names that differ in case alone are one
    bool emptyTables = false;    ///< a table may have no columns
    bool strict = false;         ///< keys have each column once, refer to keys, and share no names
    bool typesNeeded = false;    ///< a column without a type is one of which it isn't known
    bool comparesTypes = false;  ///< a foreign key is of types that are known to compare
    bool utf8 = false;           ///< all names are UTF-8
    bool brackets = false;       ///< a name may stand in square brackets
    std::string defaultSchema{}; ///< the schema of what has none; empty if there are no schemas
};

struct Writable {
    Structure structure;
    Omissions omissions;
};

/// The part of a structure that SQL can say: what lacks a name, columns or whatever else it can't be without,
/// or what refers to such a thing, is left out and told. A model may be incomplete anywhere; what comes from
/// a database loses nothing.
Writable writable(Structure const& structure, Rules const& rules);

} // namespace database
