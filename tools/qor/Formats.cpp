#include "qor/Formats.h"

#include "database/SqlFormat.h"
#include "documents/DocumentKinds.h"
#include "documents/DotWriter.h"
#include "documents/MarkdownWriter.h"
#include "exchange/FileKinds.h"
#include "exchange/JsonWriter.h"
#include "kit/ToolError.h"
#include "qor/Dialects.h"
#include "qor/SafeText.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <CLI/CLI.hpp>
#include <algorithm>

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

/// A further format is one more entry.
std::vector<kit::Format> const& formats() {
    using documents::isDotText, documents::isMarkdownText, exchange::isGraphText;
    using kit::everyGraph;
    static std::vector<kit::Format> const all = {
        {"json", "the graph itself", {"a graph in JSON", isGraphText}, everyGraph(exchange::writeJson)},
        {"dot", "a drawing for Graphviz", {"a Graphviz text", isDotText}, everyGraph(documents::writeDot)},
        {"markdown", "a page of tables", {"Markdown", isMarkdownText}, everyGraph(documents::writeMarkdown)},
        database::sqlFormat(dialects()),
    };
    return all;
}

kit::Format const* findFormat(std::string const& name) {
    auto const found = std::find_if(formats().begin(), formats().end(),
                                    [&](kit::Format const& format) { return format.name == name; });
    return found == formats().end() ? nullptr : &*found;
}

std::string formatHelp() {
    std::string help;
    for (kit::Format const& format : formats()) {
        help += (help.empty() ? "" : "\n") + format.name + ": " + format.help;
    }
    return help;
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
    return kit::Output(path, findFormat(format)->kind, filesOf(sources), session.out);
}

kit::Output standardOutputOf(Session& session, std::vector<std::string> const& sources) {
    return outputOf(session, "", "json", sources);
}

} // namespace qorprogram
