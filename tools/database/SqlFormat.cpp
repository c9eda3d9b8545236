#include "database/SqlFormat.h"

#include "database/ModelReader.h"
#include "database/SqlText.h"
#include "kit/ToolError.h"

#include <qor/QORModel.h>

#include <memory>

namespace database {
namespace {

constexpr char const* option = "dialect";

/// The one that the user names, or that of the system which the structure comes from.
Dialect const& dialectFor(Dialects const& dialects, kit::Exporting const& exporting,
                          Structure const& structure) {
    auto const given = exporting.options.find(option);
    if (given != exporting.options.end()) {
        return dialects.named(given->second);
    }
    Dialect const* const dialect = dialects.nearest(structure.origin);
    if (!dialect) {
        throw kit::ToolError(exporting.source,
                             std::string("comes from no known system, so --") + option + " must name one");
    }
    return *dialect;
}

kit::Writing prepare(Dialects const& dialects, kit::Exporting const& exporting) {
    if (!exporting.root.isInstanceOf(QORElementType::MODEL)) {
        throw kit::ToolError(exporting.source, "its root isn't a model, and only a model becomes SQL");
    }
    auto const structure =
        std::make_shared<Structure const>(readModel(static_cast<QORModel&>(exporting.root)));
    Dialect const& dialect = dialectFor(dialects, exporting, *structure);
    return [&dialects, &dialect, structure](std::ostream& out) {
        std::vector<std::string> lines;
        for (Omission const& omission : dialects.write(*structure, dialect, out)) {
            lines.push_back(textOf(omission));
        }
        return lines;
    };
}

} // namespace

kit::Format sqlFormat(Dialects const& dialects) {
    kit::Format format;
    format.name = "sql";
    format.help = "the statements that create the database";
    format.kind = {"SQL text", isSqlText};
    format.prepare = [&dialects](kit::Exporting const& exporting) { return prepare(dialects, exporting); };
    format.options = {
        {option, "The dialect of the SQL; the default is that of the database", dialects.names()}};
    return format;
}

} // namespace database
