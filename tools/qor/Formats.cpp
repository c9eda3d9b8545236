#include "qor/Formats.h"

#include "database/SqlText.h"
#include "documents/DocumentKinds.h"
#include "documents/DotWriter.h"
#include "documents/MarkdownWriter.h"
#include "exchange/FileKinds.h"
#include "exchange/JsonWriter.h"
#include "kit/ToolError.h"
#include "qor/SafeText.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <CLI/CLI.hpp>

namespace qorprogram {
namespace {

std::vector<std::string> filesOf(std::vector<std::string> const& sources) {
    std::vector<std::string> files;
    for (std::string const& source : sources) {
        std::vector<std::string> const ofSource = filesOfSource(source);
        files.insert(files.end(), ofSource.begin(), ofSource.end());
    }
    return files;
}

} // namespace

/// A further format is one more line.
std::map<std::string, Format> const& formats() {
    static std::map<std::string, Format> const all = {
        {"json", {{"a graph in JSON", exchange::isGraphText}, exchange::writeJson}},
        {"dot", {{"a Graphviz text", documents::isDotText}, documents::writeDot}},
        {"markdown", {{"Markdown", documents::isMarkdownText}, documents::writeMarkdown}},
        {"sql", {{"SQL text", database::isSqlText}, nullptr}}};
    return all;
}

void addOutputOption(CLI::App& verb, std::string& path, char const* help) {
    verb.add_option("-o,--output", path, help)->check([](std::string const& given) {
        return given.empty() ? std::string("names no file") : "";
    });
}

kit::Output outputOf(Session& session, std::string const& path, std::string const& format,
                     std::vector<std::string> const& sources) {
    if (isAddress(path)) {
        throw kit::ToolError(path, "is an address; the output must be a file");
    }
    return kit::Output(path, formats().at(format).kind, filesOf(sources), session.out);
}

kit::Output standardOutputOf(Session& session, std::vector<std::string> const& sources) {
    return outputOf(session, "", "json", sources);
}

} // namespace qorprogram
