#include "qor/Verbs.h"

#include "exchange/JsonWriter.h"
#include "exchange/Recoding.h"
#include "kit/ToolError.h"
#include "qor/Formats.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <qor/QOREncodingConverter.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

constexpr int incomplete = 1;

struct RecodeOptions {
    std::string source;
    std::string from;
    std::string to;
    std::string output;
    bool force = false;
};

std::unique_ptr<QOREncodingConverter> converterFor(std::string const& encoding) {
    std::unique_ptr<QOREncodingConverter> converter(QOREncodingConverter::create(encoding.c_str()));
    if (!converter) {
        throw kit::ToolError(encoding, "is an unknown encoding");
    }
    return converter;
}

void report(exchange::Recoded const& recoded, Session& session) {
    session.say(
        "converted " + std::to_string(recoded.converted) + ", unchanged " +
        std::to_string(recoded.unchanged) + ", failed " + std::to_string(recoded.failed) +
        (recoded.renamed > 0 ? ", with a number after the name " + std::to_string(recoded.renamed) : ""));
}

void recode(RecodeOptions const& options, Session& session) {
    auto const from = converterFor(options.from);
    auto const to = converterFor(options.to);
    kit::Output const output = outputOf(session, options.output, "json", {options.source});
    kit::Graph const graph = loadSource(options.source, session);
    exchange::Recoded const recoded = exchange::recode(graph.root(), *from, *to);
    if (recoded.failed > 0 && !options.force) {
        std::size_t const texts = recoded.converted + recoded.unchanged + recoded.failed;
        throw kit::ToolError(options.source, std::to_string(recoded.failed) + " of " + std::to_string(texts) +
                                                 " texts can't be converted from " + options.from + " to " +
                                                 options.to + ", the first at " + recoded.firstFailed +
                                                 "; --force keeps them as they are");
    }
    output.write([&](std::ostream& out) { exchange::writeJson(recoded.graph.root(), out); });
    if (!session.quiet) {
        report(recoded, session);
    }
    session.exitCode = recoded.failed > 0 ? incomplete : 0;
}

} // namespace

void addRecodeVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<RecodeOptions>();
    CLI::App* const verb =
        program.add_subcommand("recode", "Convert the texts of a graph to another encoding");
    verb->group("Verbs");
    verb->add_option("FILE", options->source, sourceHelp())->required();
    verb->add_option("--from", options->from, "The current encoding of the texts")->required();
    verb->add_option("--to", options->to, "The new encoding of the texts")->required();
    addOutputOption(*verb, options->output, "Write to this file instead of the standard output");
    verb->add_flag("--force", options->force, "Write the graph even if some texts can't be converted");
    verb->add_flag("--quiet", session.quiet, quietHelp);
    verb->footer(
        "\nWrites JSON and converts each text once. Prints on the standard error how many texts were "
        "converted,\n"
        "are the same in both encodings, and can't be converted. A text that can't be converted is an\n"
        "error, and nothing is written, unless --force keeps the text as it is.\n"
        "The exit code is 0 if all texts are converted, 1 if --force kept some, 2 for an error.\n"
        "\nExample:\n  qor recode orchard.json --from ISO-8859-1 --to UTF-8 -o recoded.json");
    verb->callback([options, &session] { recode(*options, session); });
}

} // namespace qorprogram
