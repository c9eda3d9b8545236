#include "qor/Program.h"

#include "kit/OneLine.h"
#include "kit/ToolError.h"
#include "postgres/PostgresUrl.h"
#include "qor/Session.h"
#include "qor/Verbs.h"

#include <CLI/CLI.hpp>
#include <new>
#include <ostream>
#include <string>

namespace qorprogram {
namespace {

/// The address of a database is an argument that may hold a password.
std::string withoutPasswords(std::string problem, int argc, char const* const* argv) {
    for (int i = 1; i < argc; ++i) {
        problem = postgres::withHiddenUrl(std::move(problem), argv[i]);
    }
    return problem;
}

int fail(std::ostream& err, std::string const& problem) {
    err << "qor: " << kit::onOneLine(problem) << std::endl;
    return failure;
}

void parseAndRun(CLI::App& program, int argc, char const* const* argv, Session& session) {
    program.set_version_flag("--version", "qor " QOR_TOOLS_VERSION, "Print the version and exit");
    program.get_formatter()->label("SUBCOMMAND", "VERB");
    program.footer("qor VERB --help tells more of a verb.\n\nExample:\n  qor import orchard.sqlite");
    program.require_subcommand(1);
    addImportVerb(program, session);
    addShowVerb(program, session);
    addExportVerb(program, session);
    addDiffVerb(program, session);
    addRecodeVerb(program, session);
    program.parse(argc, argv);
    if (!session.out.flush()) {
        throw kit::ToolError("standard output", "can't be written");
    }
}

/// What is wrong with the arguments, with the verb that they are for.
std::string problemOf(CLI::App const& program, CLI::ParseError const& error) {
    auto const verbs = program.get_subcommands();
    if (!verbs.empty()) {
        return verbs.front()->get_name() + ": " + error.what();
    }
    auto const unknown = program.remaining();
    if (!unknown.empty()) {
        return unknown.front() + ": no such verb or option; see qor --help";
    }
    return "no verb given; see qor --help";
}

} // namespace

int run(int argc, char const* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App program(
        "Reads database schemas into metadata models; keeps, shows, compares and converts these.", "qor");
    try {
        Session session{out, err};
        parseAndRun(program, argc, argv, session);
        return session.exitCode;
    } catch (CLI::Success const& request) {
        return program.exit(request, out, err);
    } catch (CLI::ParseError const& error) {
        return fail(err, withoutPasswords(problemOf(program, error), argc, argv));
    } catch (std::bad_alloc const&) {
        return fail(err, "out of memory");
    } catch (std::exception const& error) {
        return fail(err, withoutPasswords(error.what(), argc, argv));
    }
}

} // namespace qorprogram
