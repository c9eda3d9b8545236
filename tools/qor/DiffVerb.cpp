#include "qor/Verbs.h"

#include "diff/GraphDiff.h"
#include "kit/Terminal.h"
#include "kit/ToolError.h"
#include "kit/TreePrinter.h"
#include "qor/Formats.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <memory>
#include <ostream>
#include <unistd.h>

namespace qorprogram {
namespace {

constexpr int different = 1;

struct DiffOptions {
    std::string before;
    std::string after;
    std::string format = "text";
    std::vector<std::string> renames;
    std::string renamesFile;
    bool origin = false;
};

/// The two paths with an equals sign between; one in a path has a backslash before it.
diff::Rename renameFrom(std::string const& text) {
    std::string paths[2];
    std::size_t side = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '=') {
            if (++side > 1) {
                break;
            }
            continue;
        }
        if (text[i] == '\\' && i + 1 < text.size() && text[++i] != '=') {
            paths[side] += '\\';
        }
        paths[side] += text[i];
    }
    if (side != 1 || paths[0].empty() || paths[1].empty()) {
        throw kit::ToolError("--rename " + text, "must be two paths separated by an equals sign");
    }
    return {paths[0], paths[1]};
}

/// A line for each: the path before, a tab, the path after. Empty lines and those with a # in front don't
/// count.
void readRenames(std::string const& path, std::vector<diff::Rename>& renames) {
    if (path.empty()) {
        return;
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
                                 "line " + std::to_string(number) + ": must be two paths separated by a tab");
        }
        renames.push_back({line.substr(0, tab), line.substr(tab + 1)});
    }
    if (in.bad()) {
        throw kit::ToolError(path, "can't be read");
    }
}

diff::Options optionsFrom(DiffOptions const& given) {
    diff::Options options;
    options.origin = given.origin;
    for (std::string const& rename : given.renames) {
        options.renames.push_back(renameFrom(rename));
    }
    readRenames(given.renamesFile, options.renames);
    return options;
}

void compareSources(DiffOptions const& options, Session& session) {
    if (options.before == options.after && isStandardInput(options.before)) {
        throw kit::ToolError("-", "the standard input can be read only once");
    }
    std::vector<std::string> sources{options.before, options.after};
    if (!options.renamesFile.empty()) {
        sources.push_back(options.renamesFile);
    }
    kit::Output const output = standardOutputOf(session, sources);
    diff::Options const rules = optionsFrom(options);
    kit::Graph const before = loadSource(options.before, session);
    kit::Graph const after = loadSource(options.after, session);
    diff::Difference const difference = diff::compare(before.root(), after.root(), rules);
    session.exitCode = difference.none() ? 0 : different;
    if (session.quiet) {
        return;
    }
    if (difference.rootBefore != difference.rootAfter) {
        session.say("qor: the graphs are named " + kit::quoted(difference.rootBefore) + " and " +
                    kit::quoted(difference.rootAfter) + "; this doesn't count as a difference");
    }
    output.write([&](std::ostream& out) {
        if (options.format == "json") {
            diff::printJson(difference, out);
        } else {
            diff::printText(difference, kit::wantsColor(STDOUT_FILENO), out);
        }
    });
}

} // namespace

void addDiffVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App* const verb = program.add_subcommand("diff", "Report the differences between two graphs");
    verb->group("Verbs");
    verb->add_option("A", options->before, sourceHelp())->required();
    verb->add_option("B", options->after, "The graph to compare A with")->required();
    verb->add_option("--format", options->format, "text or json")->check(CLI::IsMember({"text", "json"}));
    verb->add_option(
            "--rename", options->renames,
            "An object with another name or owner: OLD=NEW, its path in A and its path in B, or the\n"
            "ends of these, such as customer/mail=customer/email; may be repeated")
        ->type_name("OLD=NEW")
        ->allow_extra_args(false);
    verb->add_option("--renames", options->renamesFile,
                     "A file of renames: on each line the path in A, a tab, the path in B");
    verb->add_flag("--origin", options->origin,
                   "Also compare where the graphs come from, such as files and versions");
    verb->add_flag("--quiet", session.quiet, "Print nothing, only return the exit code");
    verb->footer(
        "\nObjects match if they have the same name and matching owners. Of the remaining objects, those\n"
        "with the same id match, unless it is 0, and those that --rename names. The roots match whatever\n"
        "their names, and so do objects directly below a root that have the root's name.\n"
        "The exit code is 0 for no difference, 1 for a difference, 2 for an error.\n"
        "\nExample:\n  qor diff old/orchard.sqlite new/orchard.sqlite\n"
        "  qor diff before.json after.json --rename customer/mail=customer/email");
    verb->callback([options, &session] { compareSources(*options, session); });
}

} // namespace qorprogram
