#pragma once

#include "database/SqlWriter.h"
#include "sqlite/Translation.h"

#include <set>
#include <string>
#include <vector>

namespace sqlite {

/// Writes SQL that creates a structure in an empty SQLite database, all in one transaction. Whether the
/// structure comes from SQLite decides which of the derived classes does so.
class SqlWriter : public database::SqlWriter {
public:
    SqlWriter(database::Structure const& toWrite, std::ostream& stream);

protected:
    /// A part of a CREATE TABLE.
    struct Part {
        std::string text;
        std::string plain;  ///< what stands for it if SQLite refuses it; empty for nothing
        std::string object; ///< how an omission calls it
    };

    // ---- what depends on where the structure comes from ----------------------------------------------
    virtual void writeSettings() {}
    virtual void writeNumbers() {}
    virtual void remarkSchema(database::Schema const& schema);
    /// SQLite has no comments.
    virtual void remarkComment(std::string const& what, database::Named const& thing) = 0;
    /// The omissions of the extras that have no place here, but for those that are said elsewhere.
    virtual database::Omissions omissionsOf(std::string const& what, database::Extras const& extras,
                                            std::set<std::string> const& said) const = 0;
    /// An expression or statement as SQLite takes it, or what it has that SQLite may not have.
    virtual Translation expression(std::string const& sql) const = 0;
    virtual Translation defaultExpression(std::string const& sql) const { return expression(sql); }
    virtual void writeTable(int table);
    /// The statement that makes a table of the collected parts; empty if there is none.
    virtual std::string acceptedTable(int table) = 0;
    virtual std::string tableOptions(database::Table const&) const { return ""; }
    virtual std::string typeText(database::Column const& column) const = 0;
    virtual std::string collationText(database::Extras const&) const { return ""; }
    virtual std::string conflictText(database::Extras const&) const { return ""; }
    /// The keys that stand in a column, each with a blank in front.
    virtual std::string keysInColumn(int /*table*/, int /*column*/) const { return ""; }
    virtual bool standsInColumn(database::Key const&) const { return false; }
    /// The conditions that come with the type of a column.
    virtual void addTypeChecks(database::Table const&, database::Column const&) {}
    virtual std::string nameOf(database::Index const& index) = 0;
    virtual bool namesColumns(database::Table const& view) const = 0;
    /// Writes a statement, unless SQLite refuses it.
    virtual bool writeAccepted(std::string const& what, std::string const& text) = 0;
    virtual void writeTrigger(std::string const& what, database::Trigger const& trigger) = 0;

    // ---- what both share -----------------------------------------------------------------------------
    void begin() override;
    void writeTables() override;
    void writeIndexes() override;
    void writeTriggers() override;
    void end() override;
    std::string quoted(std::string const& name) const override;
    std::string tableName(int table) const override;
    std::string keyOptions(database::Key const& key) override;
    std::string referenceText(database::Key const& key) override;

    using database::SqlWriter::leftOut;
    void leftOut(std::string const& what, std::string const& why, std::string const& original = "");
    /// The same behind the table that is being written.
    void leftOutOfTable(std::string const& what, std::string const& why, std::string const& original = "");
    void remarkExtras(std::string const& what, database::Extras const& extras,
                      std::set<std::string> const& said = {});
    void remarkExtrasLater(database::Key const& key, std::set<std::string> const& said);
    std::string uniqueName(std::string const& name, int schema);
    database::Type const* typeOf(database::Column const& column) const;
    void addCheck(database::Table const& table, std::string const& name, Translation const& translation,
                  std::string const& original);
    std::string tableText(int table, std::vector<Part> const& from) const;
    std::string viewText(int view, std::string const& statement) const;

    std::vector<std::string> names; ///< of the tables
    std::set<std::string> taken;    ///< names of tables and indexes in lower case
    std::vector<Part> parts;        ///< of the table that is being written

private:
    void nameTables();
    void remarkCatalog();
    void remarkTable(int table);
    void remarkOthers();
    void collectParts(int table);
    std::string keyName(database::Key const& key) const;
    std::string columnText(database::Table const& table, database::Column const& column);
    std::string generatedText(database::Table const& table, database::Column const& column);
    std::string defaultText(database::Table const& table, database::Column const& column,
                            std::string const& value);
    Translation memberText(database::Index const& index, database::IndexMember const& member) const;
    Translation indexText(database::Index const& index) const;
    void writeIndex(database::Index const& index);

    database::Omissions pending; ///< of the table that is being written; they are reported after it
};

} // namespace sqlite
