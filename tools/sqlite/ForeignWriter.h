#pragma once

#include "sqlite/Scratch.h"
#include "sqlite/SqlWriter.h"

#include <map>
#include <utility>

namespace sqlite {

/// Writes a structure of another system. Its types become those of SQLite that hold the same, its SQL is
/// translated, and SQLite itself checks each statement: what it refuses is left out.
class ForeignWriter : public SqlWriter {
public:
    using SqlWriter::SqlWriter;

private:
    void remarkSchema(database::Schema const& schema) override;
    void remarkComment(std::string const& what, database::Named const& thing) override;
    database::Omissions omissionsOf(std::string const& what, database::Extras const& extras,
                                    std::set<std::string> const& said) const override;
    Translation expression(std::string const& sql) const override;
    Translation defaultExpression(std::string const& sql) const override;
    void writeTables() override;
    std::string acceptedTable(int table) override;
    std::string typeText(database::Column const& column) const override;
    void addTypeChecks(database::Table const& table, database::Column const& column) override;
    std::string nameOf(database::Index const& index) override;
    bool namesColumns(database::Table const& view) const override;
    bool writeAccepted(std::string const& what, std::string const& text) override;
    void writeReferences() override;
    void writeTrigger(std::string const& what, database::Trigger const& trigger) override;

    std::string withoutSchemas(std::string const& sql) const;
    bool writeViewIfUsable(int number);
    void leaveOutView(int number);

    std::map<std::pair<std::string, std::string>, std::string> qualified; ///< names by schema and table
    Scratch scratch;
};

} // namespace sqlite
