#pragma once

#include <memory>
#include <string>

struct sqlite3;

namespace sqlite {

/// A database in memory that checks whether SQLite accepts a statement.
class Scratch {
public:
    Scratch();

    /// Runs a statement. Returns what SQLite says against it, and leaves the database as it was; empty if it
    /// says nothing.
    std::string take(std::string const& sql);
    /// The same, and the database is left as it was in any case.
    std::string check(std::string const& sql);
    /// Runs the statement that makes a view, and refuses it as well if the view can't be used.
    std::string takeView(std::string const& sql, std::string const& name);

private:
    struct Closer {
        void operator()(sqlite3* handle) const;
    };
    std::string run(std::string const& sql);
    std::string undo(std::string const& problem);

    std::unique_ptr<sqlite3, Closer> connection;
};

} // namespace sqlite
