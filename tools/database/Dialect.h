#pragma once

#include "database/Omission.h"
#include "database/Structure.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace database {

/// What the SQL of a system may say in ways of its own. Those that translate from it need to know.
struct Habits {
    bool brackets = false;              ///< a name may stand in square brackets
    bool untypedColumns = false;        ///< a column may have no type
    bool integerKeysNumberRows = false; ///< a primary key declared as INTEGER alone numbers the rows
};

/// The SQL of one system. A dialect lives as long as the program.
class Dialect {
public:
    Dialect() = default;
    Dialect(Dialect const&) = delete;
    Dialect& operator=(Dialect const&) = delete;
    virtual ~Dialect() = default;

    /// How users name it, in small letters.
    virtual char const* name() const = 0;
    /// How the origin of a structure names the system.
    virtual char const* system() const = 0;
    virtual Habits habits() const { return {}; }

    /// Writes SQL that creates the structure in an empty database of the system: each object comes after
    /// those that it needs. What can't be written is reported in a comment at its place and returned. `from`
    /// is the dialect of the system that the structure comes from, null if that is unknown. Of another
    /// system's structure only what this system accepts is written.
    Omissions write(Structure const& structure, Dialect const* from, std::ostream& out) const;

private:
    /// Writes a structure of this system as it stands.
    virtual Omissions writeOwn(Structure const& structure, std::ostream& out) const = 0;
    /// Writes a structure of another system.
    virtual Omissions translate(Structure const& structure, Habits const& from, std::ostream& out) const = 0;
};

/// The dialects of a program.
class Dialects {
public:
    explicit Dialects(std::vector<Dialect const*> dialects) : all(std::move(dialects)) {}

    std::vector<std::string> names() const;
    /// Throws kit::ToolError if there is none of that name.
    Dialect const& named(std::string const& name) const;
    /// The dialect of the system that a structure comes from, or null. A model made by hand may spell the
    /// system in other letters.
    Dialect const* nearest(Origin const& origin) const;

    /// Writes a structure in a dialect, whichever of them it comes from.
    Omissions write(Structure const& structure, Dialect const& dialect, std::ostream& out) const;

private:
    std::vector<Dialect const*> all;
};

} // namespace database
