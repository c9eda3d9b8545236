#include "qor/Verbs.h"

#include "diff/GraphDiff.h"
#include "kit/OutputFile.h"
#include "kit/ToolError.h"
#include "qor/Session.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

constexpr int different = 1;

struct DiffOptions {
    std::string before;
    std::string after;
    std::string format = "text";
    std::string renames;
};

/// A line for each: the path before, a tab, the path after. Empty lines and those with a # in front don't
/// count.
std::vector<diff::Rename> readRenames(std::string const& path) {
    std::vector<diff::Rename> renames;
    if (path.empty()) {
        return renames;
    }
    std::ifstream in(path);
    if (!in) {
        throw kit::ToolError(path, "can't be read");
    }
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::size_t const tab = line.find('\t');
        if (tab == std::string::npos || tab == 0 || tab + 1 == line.size() ||
            line.find('\t', tab + 1) != std::string::npos) {
            throw kit::ToolError(path,
                                 "line " + std::to_string(number) + ": two paths with a tab between are due");
        }
        renames.push_back({line.substr(0, tab), line.substr(tab + 1)});
    }
    if (in.bad()) {
        throw kit::ToolError(path, "can't be read");
    }
    return renames;
}

void compareSources(DiffOptions const& options, Session& session) {
    kit::Graph const before = loadSource(options.before);
    kit::Graph const after = loadSource(options.after);
    diff::Difference const difference =
        diff::compare(before.root(), after.root(), readRenames(options.renames));
    session.exitCode = difference.none() ? 0 : different;
    if (session.quiet) {
        return;
    }
    kit::writeOutput("", session.out, [&](std::ostream& out) {
        options.format == "json" ? diff::printJson(difference, out) : diff::printText(difference, out);
    });
}

} // namespace

void addDiffVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App* const verb = program.add_subcommand("diff", "Tell in what two graphs differ");
    verb->group("Verbs");
    verb->add_option("A", options->before, "A graph in JSON, or a database; it is only read")->required();
    verb->add_option("B", options->after, "What to compare it with")->required();
    verb->add_option("--format", options->format, "text or json")->check(CLI::IsMember({"text", "json"}));
    verb->add_option("--renames", options->renames,
                     "A file that tells which objects have other names or owners: a line for each, the path\n"
                     "in A, a tab, the path in B");
    verb->add_flag("--quiet", session.quiet, "Tell by the exit code alone");
    verb->footer("\nObjects belong together that have the same names, and the same owners; those left over\n"
                 "that have the same id, unless it is 0; and those that --renames names.\n"
                 "The exit code is 0 for no difference, 1 for some, 2 for an error.\n"
                 "\nExample:\n  qor diff old/orchard.sqlite new/orchard.sqlite");
    verb->callback([options, &session] { compareSources(*options, session); });
}

} // namespace qorprogram
