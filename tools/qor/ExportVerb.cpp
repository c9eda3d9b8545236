#include "qor/Verbs.h"

#include "kit/ToolError.h"
#include "qor/Formats.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

struct ExportOptions {
    std::string source;
    std::string format;
    std::map<std::string, std::string> ofFormats; ///< the options of all formats; empty where not set
    std::string output;
};

/// The options that are set, which must be the format's own.
std::map<std::string, std::string> optionsFor(kit::Format const& chosen, ExportOptions const& options) {
    std::map<std::string, std::string> set;
    for (kit::Format const& format : formats()) {
        for (kit::FormatOption const& option : format.options) {
            std::string const& value = options.ofFormats.at(option.name);
            if (!value.empty() && format.name != chosen.name) {
                throw kit::ToolError("--" + option.name, "is only for --format " + format.name);
            }
            if (!value.empty()) {
                set[option.name] = value;
            }
        }
    }
    return set;
}

void exportGraph(ExportOptions const& options, Session& session) {
    kit::Format const& format = *findFormat(options.format);
    auto const ofFormat = optionsFor(format, options);
    kit::Output const output = outputOf(session, options.output, options.format, {options.source});
    kit::Graph const graph = loadSource(options.source, session);
    kit::Writing const write = format.prepare({graph.root(), options.source, ofFormat});
    std::vector<std::string> remarks;
    output.write([&](std::ostream& out) { remarks = write(out); });
    for (std::string const& remark : remarks) {
        session.remark(remark);
    }
}

std::vector<std::string> formatNames() {
    std::vector<std::string> names;
    for (kit::Format const& format : formats()) {
        names.push_back(format.name);
    }
    return names;
}

/// A help text lists them, and so does the completion of bash, which reads that.
CLI::Validator isFormat() {
    return {[](std::string const& format) {
                return findFormat(format) ? std::string() : format + " isn't a format; see qor export --help";
            },
            "{" + CLI::detail::join(formatNames(), ",") + "}"};
}

void addFormatOptions(CLI::App& verb, ExportOptions& options) {
    verb.add_option("--format", options.format, formatHelp())->required()->check(isFormat());
    for (kit::Format const& format : formats()) {
        for (kit::FormatOption const& option : format.options) {
            verb.add_option("--" + option.name, options.ofFormats[option.name], option.help)
                ->check(CLI::IsMember(option.values));
        }
    }
}

} // namespace

void addExportVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* const verb = program.add_subcommand("export", "Write a graph in another format");
    verb->group("Verbs");
    verb->add_option("FILE", options->source, sourceHelp())->required();
    addFormatOptions(*verb, *options);
    addOutputOption(*verb, options->output, "Write to this file instead of the standard output");
    verb->add_flag("--quiet", session.quiet, quietHelp);
    verb->footer("\nExample:\n  qor export orchard.json --format dot -o orchard.dot\n  dot -Tsvg orchard.dot "
                 "> orchard.svg");
    verb->callback([options, &session] { exportGraph(*options, session); });
}

} // namespace qorprogram
