#pragma once

#include "TemporaryFolder.h"

#include <string>
#include <sys/types.h>

/// A PostgreSQL server for this test program alone: in a temporary folder, on 127.0.0.1 alone, with
/// passwords. A process beside the program stops it and removes the folder, also when the program crashes.
class PostgresServer {
public:
    static constexpr char const* user = "keeper"; ///< may do everything
    static constexpr char const* password = "geheim-€ s/@:?#&=%";

    /// The one server, started when it is first asked for. Throws std::runtime_error if it can't be.
    static PostgresServer& instance();

    PostgresServer(PostgresServer const&) = delete;
    PostgresServer& operator=(PostgresServer const&) = delete;
    ~PostgresServer();

    /// The address of a database for the user with all rights.
    std::string url(std::string const& database = "postgres") const;
    /// The address of a database; what is special in the user and the password must be encoded.
    std::string urlFor(std::string const& credentials, std::string const& database) const;
    /// The address as it is shown: neither the user nor the password is a part of it.
    std::string shownUrl(std::string const& database) const;
    int port() const { return listensOn; }

    /// Makes a new database, in it what some SQL says, and gives its name.
    std::string makeDatabase(std::string const& sql = "", std::string const& options = "");
    /// Runs SQL in a database. Throws std::runtime_error with the server's message.
    void run(std::string const& database, std::string const& sql) const;
    /// The first column of the rows of a query, a line for each.
    std::string ask(std::string const& database, std::string const& sql) const;

    /// The path of one of PostgreSQL's own programs.
    static std::string program(std::string const& name);

private:
    PostgresServer();

    void initialise();
    bool start();
    bool isReady() const;
    void stop();

    std::string folder;
    int listensOn = 0;
    int lifeline = -1; ///< the guardian stops the server when this end of a pipe is closed
    pid_t guardian = -1;
    int databases = 0;
};
