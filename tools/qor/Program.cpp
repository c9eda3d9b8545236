#include "qor/Program.h"

#include "kit/ToolError.h"
#include "qor/Session.h"
#include "qor/Verbs.h"

#include <CLI/CLI.hpp>
#include <new>
#include <ostream>
#include <string>

namespace qorprogram {
namespace {

/// An argument can be nothing at all.
std::string shown(std::string const& argument) {
    return argument.empty() ? "\"\"" : argument;
}

void parseAndRun(CLI::App& program, int argc, char const* const* argv, Session& session) {
    program.set_version_flag("--version", "qor " QOR_TOOLS_VERSION, "Print the version and exit");
    program.get_formatter()->label("SUBCOMMAND", "VERB");
    program.footer("qor VERB --help describes a verb.\n\nExample:\n  qor import orchard.sqlite");
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

/// The verb and what wasn't expected behind it, or before any; empty if all was.
std::string surplusOf(CLI::App& program) {
    for (CLI::App* const verb : program.get_subcommands()) {
        if (auto const surplus = verb->remaining(); !surplus.empty()) {
            return verb->get_name() + ": " + shown(surplus.front()) + " is unexpected; see qor " +
                   verb->get_name() + " --help";
        }
    }
    auto const unknown = program.remaining();
    return unknown.empty() ? "" : shown(unknown.front()) + ": no such verb or option; see qor --help";
}

/// What is wrong with the arguments, with the verb that they are for.
std::string problemOf(CLI::App& program, CLI::ParseError const& error) {
    if (std::string const surplus = surplusOf(program); !surplus.empty()) {
        return surplus;
    }
    auto const verbs = program.get_subcommands();
    return verbs.empty() ? "no verb given; see qor --help" : verbs.front()->get_name() + ": " + error.what();
}

int fail(Session& session, std::string const& problem) {
    session.say("qor: " + problem);
    return failure;
}

int runIn(Session& session, int argc, char const* const* argv) {
    CLI::App program(
        "Reads database schemas into metadata models; stores, prints, compares and converts these models.",
        "qor");
    try {
        parseAndRun(program, argc, argv, session);
        return session.exitCode;
    } catch (CLI::Success const& request) {
        // Help on something that there isn't would hide that.
        std::string const surplus = surplusOf(program);
        return surplus.empty() ? program.exit(request, session.out, session.out) : fail(session, surplus);
    } catch (CLI::ParseError const& error) {
        return fail(session, problemOf(program, error));
    } catch (std::bad_alloc const&) {
        return fail(session, "out of memory");
    } catch (std::exception const& error) {
        return fail(session, error.what());
    }
}

} // namespace

int run(int argc, char const* const* argv, std::ostream& out, std::ostream& err) {
    try {
        Session session(argc, argv, out, err);
        return runIn(session, argc, argv);
    } catch (std::bad_alloc const&) {
        err << "qor: out of memory" << std::endl;
        return failure;
    }
}

} // namespace qorprogram
