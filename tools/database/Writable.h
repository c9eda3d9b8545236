#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

namespace database {

/// What a system accepts, where systems differ.
struct Rules {
    bool emptyNames = false;     ///< a table or column may be called ""
    bool ignoreCase = false;     ///< names that differ only in case are equal
    bool emptyTables = false;    ///< a table may have no columns
    bool strict = false;         ///< keys have each column once, refer to keys, and share no names
    bool typesNeeded = false;    ///< a column without a type has an unknown type
    bool comparesTypes = false;  ///< the types of a foreign key are known to be comparable
    bool utf8 = false;           ///< all names are UTF-8
    bool brackets = false;       ///< a name may stand in square brackets
    std::string defaultSchema{}; ///< the schema of what has none; empty if there are no schemas
};

struct Writable {
    Structure structure;
    Omissions omissions;
};

/// The part of a structure that SQL can express. An object that lacks a name, columns or anything else that
/// SQL requires is omitted and reported, and so is what refers to it. A model may be incomplete anywhere; a
/// structure read from a database loses nothing.
Writable writable(Structure const& structure, Rules const& rules);

} // namespace database
