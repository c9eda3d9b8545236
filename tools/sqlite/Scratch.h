#pragma once

#include <memory>
#include <string>

struct sqlite3;

namespace sqlite {

/// A database in memory that checks whether SQLite accepts a statement.
class Scratch {
public:
    Scratch();

    /// Runs a statement. If SQLite refuses it, returns SQLite's message and leaves the database as it was;
    /// otherwise returns an empty text.
    std::string take(std::string const& sql);
    /// The same, but always leaves the database as it was.
    std::string check(std::string const& sql);
    /// Runs the statement that creates a view, and also refuses it if the view can't be used.
    std::string takeView(std::string const& sql, std::string const& name);

    /// Returns SQLite's message against a statement, which isn't run; an empty text if it has none.
    /// Functions, modules and collations that SQLite doesn't know are no problem, more than one statement is.
    std::string problem(std::string const& sql) const;
    /// The same of a statement that needs a table or view; `needed` creates it. Leaves the database as it
    /// was.
    std::string problem(std::string const& needed, std::string const& sql);

private:
    struct Closer {
        void operator()(sqlite3* handle) const;
    };
    std::string run(std::string const& sql);
    std::string undo(std::string const& problem);

    std::unique_ptr<sqlite3, Closer> connection;
};

} // namespace sqlite
