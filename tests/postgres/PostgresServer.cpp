#include "PostgresServer.h"

#include "RunProgram.h"

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <grp.h>
#include <libpq-fe.h>
#include <memory>
#include <poll.h>
#include <pwd.h>
#include <sys/socket.h>
#include <thread>

namespace {

/// The account that the server runs under; it refuses to run under root's.
struct Account {
    uid_t user = geteuid();
    gid_t group = getegid();
};

Account account() {
    Account result;
    for (char const* const name : {"postgres", "nobody"}) {
        passwd const* const entry = result.user == 0 ? getpwnam(name) : nullptr;
        if (entry) {
            result = {entry->pw_uid, entry->pw_gid};
        }
    }
    return result;
}

void takeAccount() {
    Account const other = account();
    bool const isOther = other.user != geteuid();
    if (isOther && (setgroups(0, nullptr) != 0 || setgid(other.group) != 0 || setuid(other.user) != 0)) {
        _exit(126);
    }
    if (chdir("/") != 0) {
        _exit(126);
    }
}

int freePort() {
    int const probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    socklen_t length = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bool const found = bind(probe, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                       getsockname(probe, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    close(probe);
    if (!found) {
        throw std::runtime_error("no free port");
    }
    return ntohs(address.sin_port);
}

/// Runs in a process of its own: the server, until the other end of the pipe is closed. Only a server that
/// ended by itself leaves the folder to the test program.
[[noreturn]] void guard(int pipeEnd, std::vector<std::string> const& command, std::string const& folder) {
    setsid();
    pid_t const server = fork();
    if (server == 0) {
        int const log = open((folder + "/log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(log, STDOUT_FILENO);
        dup2(log, STDERR_FILENO);
        takeAccount();
        std::vector<char*> arguments;
        for (std::string const& word : command) {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    pollfd other{pipeEnd, POLLIN, 0};
    while (poll(&other, 1, 50) == 0) {
        if (waitpid(server, nullptr, WNOHANG) == server) {
            _exit(1);
        }
    }
    kill(server, SIGINT);
    waitpid(server, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    _exit(0);
}

std::string encoded(std::string const& text) {
    constexpr char const* digits = "0123456789ABCDEF";
    std::string result;
    for (char const character : text) {
        auto const code = static_cast<unsigned char>(character);
        result += '%';
        result += digits[code >> 4];
        result += digits[code & 15];
    }
    return result;
}

} // namespace

PostgresServer& PostgresServer::instance() {
    static PostgresServer server;
    return server;
}

PostgresServer::PostgresServer() {
    initialise();
    constexpr int attempts = 5;
    for (int i = 0; i < attempts; ++i) {
        if (start()) {
            return;
        }
    }
    std::string const log = contentOf(folder + "/log");
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    throw std::runtime_error("the PostgreSQL server doesn't start:\n" + log);
}

PostgresServer::~PostgresServer() {
    stop();
}

std::string PostgresServer::program(std::string const& name) {
    std::vector<std::string> candidates;
    for (auto const& version : {"18", "17", "16", "15", "14", "13", "12"}) {
        candidates.push_back(std::string("/usr/lib/postgresql/") + version + "/bin/" + name);
    }
    if (std::filesystem::exists("/usr/bin/pg_config")) {
        std::string folder = runProgram({"/usr/bin/pg_config", "--bindir"}).out;
        folder.erase(folder.find_last_not_of('\n') + 1);
        candidates.push_back(folder + "/" + name);
    }
    auto const found = std::find_if(candidates.begin(), candidates.end(), [](std::string const& candidate) {
        return access(candidate.c_str(), X_OK) == 0;
    });
    if (found == candidates.end()) {
        throw std::runtime_error("no program " + name +
                                 ": install the package postgresql, or configure with "
                                 "-DQOR_POSTGRES_TESTS=OFF");
    }
    return *found;
}

void PostgresServer::initialise() {
    std::string const maker = program("initdb");
    std::string pattern = (std::filesystem::temp_directory_path() / "qor-postgres-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        throw std::runtime_error("no temporary folder");
    }
    folder = pattern;
    std::string const secret = folder + "/password";
    std::ofstream(secret) << password << '\n';
    Account const owner = account();
    if (chown(folder.c_str(), owner.user, owner.group) != 0 ||
        chown(secret.c_str(), owner.user, owner.group) != 0) {
        throw std::runtime_error("the temporary folder can't be given away");
    }
    ProgramResult const made = runProgram({maker, "-D", folder + "/data", "-U", user, "--pwfile", secret,
                                           "-A", "scram-sha-256", "-E", "UTF8", "--locale=C", "-N"},
                                          takeAccount);
    if (made.exitCode != 0) {
        throw std::runtime_error("initdb: " + made.err);
    }
}

/// False if the server ended at once, as it does if somebody else took the port.
bool PostgresServer::start() {
    listensOn = freePort();
    std::vector<std::string> const command = {program("postgres"),
                                              "-D",
                                              folder + "/data",
                                              "-p",
                                              std::to_string(listensOn),
                                              "-c",
                                              "listen_addresses=127.0.0.1",
                                              "-c",
                                              "unix_socket_directories=",
                                              "-c",
                                              "fsync=off",
                                              "-c",
                                              "full_page_writes=off",
                                              "-c",
                                              "max_connections=20"};
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    guardian = fork();
    if (guardian == 0) {
        close(ends[1]);
        guard(ends[0], command, folder);
    }
    close(ends[0]);
    lifeline = ends[1];
    constexpr int tries = 600;
    for (int i = 0; i < tries; ++i) {
        if (waitpid(guardian, nullptr, WNOHANG) == guardian) {
            close(lifeline);
            lifeline = -1;
            guardian = -1;
            return false;
        }
        if (isReady()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    stop();
    throw std::runtime_error("the PostgreSQL server isn't ready after a minute");
}

bool PostgresServer::isReady() const {
    return PQping(url().c_str()) == PQPING_OK;
}

void PostgresServer::stop() {
    if (lifeline >= 0) {
        close(lifeline);
        waitpid(guardian, nullptr, 0);
        lifeline = -1;
    }
}

std::string PostgresServer::url(std::string const& database) const {
    return urlFor(std::string(user) + ":" + encoded(password), database);
}

std::string PostgresServer::urlFor(std::string const& credentials, std::string const& database) const {
    return "postgresql://" + credentials + "@127.0.0.1:" + std::to_string(listensOn) + "/" + database;
}

std::string PostgresServer::shownUrl(std::string const& database) const {
    return "postgresql://127.0.0.1:" + std::to_string(listensOn) + "/" + database;
}

std::string PostgresServer::makeDatabase(std::string const& sql, std::string const& options) {
    std::string const name = "test" + std::to_string(++databases);
    run("postgres", "CREATE DATABASE " + name + " " + options);
    if (!sql.empty()) {
        run(name, sql);
    }
    return name;
}

void PostgresServer::run(std::string const& database, std::string const& sql) const {
    ask(database, sql);
}

std::string PostgresServer::ask(std::string const& database, std::string const& sql) const {
    std::unique_ptr<PGconn, void (*)(PGconn*)> const connection(PQconnectdb(url(database).c_str()), PQfinish);
    PQsetClientEncoding(connection.get(), "UTF8");
    PQclear(PQexec(connection.get(), "SET lock_timeout = '30s'"));
    PQsetNoticeProcessor(
        connection.get(), [](void*, char const*) {}, nullptr);
    std::unique_ptr<PGresult, void (*)(PGresult*)> const result(PQexec(connection.get(), sql.c_str()),
                                                                PQclear);
    ExecStatusType const status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_EMPTY_QUERY) {
        throw std::runtime_error(PQerrorMessage(connection.get()));
    }
    std::string lines;
    for (int i = 0; i < PQntuples(result.get()); ++i) {
        lines += std::string(PQgetvalue(result.get(), i, 0)) + "\n";
    }
    return lines;
}
