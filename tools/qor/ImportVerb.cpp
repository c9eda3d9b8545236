#include "qor/Verbs.h"

#include "kit/Statistics.h"
#include "kit/TreePrinter.h"
#include "sqlite/SchemaImporter.h"
#include "sqlite/SqliteDatabase.h"

#include <qor/QORModel.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <sstream>

namespace qorprogram {
namespace {

struct ImportOptions {
    std::string file;
    bool statistics = false;
};

void import(ImportOptions const& options, std::ostream& out) {
    sqlite::Database database(options.file);
    std::unique_ptr<QORModel> const model = sqlite::importSchema(database);
    // Into memory first: what fails half-way shows nothing.
    std::ostringstream text;
    if (options.statistics) {
        kit::printStatistics(kit::countObjects(*model), text);
    } else {
        kit::printTree(*model, text);
    }
    out << text.str();
}

} // namespace

void addImportVerb(CLI::App& program, std::ostream& out) {
    auto options = std::make_shared<ImportOptions>();
    CLI::App* const verb =
        program.add_subcommand("import", "Read the schema of an SQLite database and print it");
    verb->group("Verbs");
    verb->add_option("FILE", options->file, "The database; it is only read")->required();
    verb->add_flag("--stats", options->statistics, "Print how many objects of which class there are instead");
    verb->footer(
        "\nPrints a model, its packages, a Class for each table with an Attribute for each column, and\n"
        "the types of the columns, as a tree: each line is an object, below its owner.\n"
        "\nExample:\n  qor import orchard.sqlite\n  qor import --stats orchard.sqlite");
    verb->callback([options, &out] { import(*options, out); });
}

} // namespace qorprogram
