#include "documents/MarkdownWriter.h"

#include "database/ModelReader.h"
#include "kit/JsonText.h"
#include "kit/Text.h"

#include <ostream>
#include <string>

namespace documents {
namespace {

using database::Column;
using database::Extra;
using database::Index;
using database::IndexMember;
using database::Key;
using database::KeyKind;
using database::Table;
using database::Type;

using Texts = std::vector<std::string>;

/// A text on one line, in which nothing has a meaning in Markdown.
std::string plain(std::string_view text) {
    std::string result;
    for (char const character : kit::printable(text)) {
        if (std::string_view("\\`*_{}[]<>()#+-.!|~&").find(character) != std::string_view::npos) {
            result += '\\';
        }
        result += character;
    }
    return result;
}

std::string listed(Texts const& names) {
    return kit::joined(names, ", ");
}

std::string named(database::Named const& record) {
    return record.name.empty() ? "" : " " + plain(record.name);
}

class Page {
public:
    Page(database::Structure const& read, std::ostream& stream)
        : structure(read), keys(read.tables.size()), indexes(read.tables.size()), out(stream) {
        for (Key const& key : structure.keys) {
            keys[static_cast<std::size_t>(key.table)].push_back(&key);
        }
        for (Index const& index : structure.indexes) {
            indexes[static_cast<std::size_t>(index.table)].push_back(&index);
        }
    }

    void write() {
        out << "# " << plain(structure.catalog.name) << '\n';
        for (std::size_t i = 0; i < structure.tables.size(); ++i) {
            writeChapter(i);
        }
    }

private:
    void writeChapter(std::size_t number) {
        Table const& table = structure.tables[number];
        out << "\n## " << plain(table.name) << "\n";
        if (!table.comment.empty()) {
            out << '\n' << plain(table.comment) << '\n';
        }
        if (!table.columns.empty()) {
            out << "\n| Column | Type | Optional | Default | Comment |\n| --- | --- | --- | --- | --- |\n";
        }
        for (Column const& column : table.columns) {
            writeColumn(column);
        }
        writeKeys(number);
    }

    void writeColumn(Column const& column) {
        Type const* const type =
            column.type < 0 ? nullptr : &structure.types[static_cast<std::size_t>(column.type)];
        bool const hasValue = !findExtra(column.extras, database::withoutValue);
        out << "| " << plain(column.name) << " | " << (type ? plain(type->name) : "") << " | "
            << (hasValue ? (column.notNull ? "no | " : "yes | ") + plain(column.defaultValue) : " | ")
            << " | " << plain(column.comment) << " |\n";
    }

    /// A list of the keys, the primary one first, and the indexes that aren't just there for a key.
    void writeKeys(std::size_t number) {
        Texts lines;
        for (KeyKind const kind : {KeyKind::PRIMARY, KeyKind::UNIQUE, KeyKind::FOREIGN}) {
            for (Key const* key : keys[number]) {
                if (key->kind == kind) {
                    lines.push_back(lineOf(*key));
                }
            }
        }
        for (Index const* index : indexes[number]) {
            lines.push_back(lineOf(*index));
        }
        char const* before = "\n";
        for (std::string const& line : lines) {
            out << before << "- " << line << '\n';
            before = "";
        }
    }

    std::string lineOf(Key const& key) const {
        std::string const columns = listed(columnsOf(key));
        switch (key.kind) {
        case KeyKind::PRIMARY:
            return "Primary key" + named(key) + ": " + columns;
        case KeyKind::UNIQUE:
            return "Unique key" + named(key) + ": " + columns;
        case KeyKind::FOREIGN:
            break;
        }
        return "Foreign key" + named(key) + ": " + columns + referenceOf(key);
    }

    std::string referenceOf(Key const& key) const {
        if (key.referredTable < 0) {
            return "";
        }
        Texts const columns = columnsIn(key.referredTable, key.referredColumns);
        return " to " + plain(tableAt(key.referredTable).name) +
               (columns.empty() ? "" : " (" + listed(columns) + ")");
    }

    Texts columnsOf(Key const& key) const {
        Texts names;
        for (Extra const& extra : key.extras) {
            if (extra.name == database::columnName) {
                names.push_back(plain(extra.value));
            }
        }
        return names.empty() ? columnsIn(key.table, key.columns) : names;
    }

    Texts columnsIn(int table, std::vector<int> const& columns) const {
        Texts names;
        for (int const column : columns) {
            if (column >= 0) {
                names.push_back(nameOf(table, column));
            }
        }
        return names;
    }

    std::string lineOf(Index const& index) const {
        Texts columns;
        for (IndexMember const& member : index.members) {
            std::string const* const stray = findExtra(member.extras, database::columnName);
            columns.push_back(member.column >= 0 ? nameOf(index.table, member.column)
                              : stray            ? plain(*stray)
                                                 : "an expression");
        }
        return (index.unique ? "Unique index" : "Index") + named(index) + ": " + listed(columns);
    }

    Table const& tableAt(int number) const { return structure.tables[static_cast<std::size_t>(number)]; }

    std::string nameOf(int table, int column) const {
        return plain(tableAt(table).columns[static_cast<std::size_t>(column)].name);
    }

    database::Structure const& structure;
    std::vector<std::vector<Key const*>> keys; ///< of each table
    std::vector<std::vector<Index const*>> indexes;
    std::ostream& out;
};

} // namespace

void writeMarkdown(QORObject& root, std::ostream& out) {
    Page(database::readDocument(kit::Numbering(root)).structure, out).write();
}

} // namespace documents
