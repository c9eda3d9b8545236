#include "qor/Verbs.h"

#include "exchange/JsonWriter.h"
#include "kit/OutputFile.h"
#include "kit/ToolError.h"
#include "qor/Session.h"

#include <qor/QOREncodingConverter.h>
#include <qor/QORObject.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

namespace qorprogram {
namespace {

struct RecodeOptions {
    std::string source;
    std::string from;
    std::string to;
    std::string output;
};

std::unique_ptr<QOREncodingConverter> converterFor(std::string const& encoding) {
    std::unique_ptr<QOREncodingConverter> converter(QOREncodingConverter::create(encoding.c_str()));
    if (!converter) {
        throw kit::ToolError(encoding, "no encoding of that name is known");
    }
    return converter;
}

void recode(RecodeOptions const& options, Session& session) {
    auto const from = converterFor(options.from);
    auto const to = converterFor(options.to);
    kit::Graph const graph = loadSource(options.source);
    int converted = 0;
    int failed = 0;
    for (QORObject* object : graph.objects()) {
        if (object->getParentCount() == 0) { // each takes along what it owns
            object->transcode(from.get(), to.get(), converted, failed);
        }
    }
    kit::writeOutput(options.output, session.out,
                     [&](std::ostream& out) { exchange::writeJson(graph.root(), out); });
    if (!session.quiet) {
        session.err << "converted " << converted << ", failed " << failed << '\n';
    }
}

} // namespace

void addRecodeVerb(CLI::App& program, Session& session) {
    auto options = std::make_shared<RecodeOptions>();
    CLI::App* const verb =
        program.add_subcommand("recode", "Convert the texts of a graph to another encoding");
    verb->group("Verbs");
    verb->add_option("FILE", options->source, "A graph in JSON, or a database; it is only read")->required();
    verb->add_option("--from", options->from, "The encoding that the texts have")->required();
    verb->add_option("--to", options->to, "The encoding that they are to have")->required();
    verb->add_option("-o,--output", options->output, "Write to this file instead of the standard output");
    verb->add_flag("--quiet", session.quiet, "Don't tell how many texts were converted");
    verb->footer(
        "\nWrites JSON. A text that can't be converted stays as it is; the standard error tells how many\n"
        "were converted and how many weren't.\n"
        "\nExample:\n  qor recode orchard.json --from ISO-8859-1 --to UTF-8 -o recoded.json");
    verb->callback([options, &session] { recode(*options, session); });
}

} // namespace qorprogram
