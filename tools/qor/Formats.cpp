#include "qor/Formats.h"

#include "database/SqlText.h"
#include "exchange/FileKinds.h"
#include "kit/ToolError.h"
#include "qor/SafeText.h"
#include "qor/Session.h"
#include "qor/Sources.h"

#include <map>

namespace qorprogram {
namespace {

/// A further format is one more line.
std::map<std::string, kit::FileKind> const kinds = {{"dot", {"a Graphviz text", exchange::isDotText}},
                                                    {"json", {"a graph in JSON", exchange::isGraphText}},
                                                    {"markdown", {"Markdown", exchange::isMarkdownText}},
                                                    {"sql", {"SQL text", database::isSqlText}}};

/// Nothing is written on a terminal that could be taken for a result.
bool isNoKind(std::istream&) {
    return false;
}

kit::FileKind const textForPeople = {"a text for people", isNoKind};

} // namespace

kit::FileKind const& fileKindOf(std::string const& format) {
    auto const known = kinds.find(format);
    return known == kinds.end() ? textForPeople : known->second;
}

kit::Output outputOf(Session& session, std::string const& path, std::string const& format,
                     std::vector<std::string> const& sources) {
    if (isAddress(path)) {
        throw kit::ToolError(path, "is an address, and only a file can be written");
    }
    std::vector<std::string> files;
    for (std::string const& source : sources) {
        std::vector<std::string> const ofSource = filesOfSource(source);
        files.insert(files.end(), ofSource.begin(), ofSource.end());
    }
    return kit::Output(path, fileKindOf(format), files, session.out);
}

} // namespace qorprogram
