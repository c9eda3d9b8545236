#pragma once

#include "sqlite/SqlWriter.h"

namespace sqlite {

/// Writes a structure that comes from SQLite as it stands there.
class OwnWriter : public SqlWriter {
public:
    using SqlWriter::SqlWriter;

private:
    void writeSettings() override;
    void writeNumbers() override;
    void remarkComment(std::string const& what, database::Named const& thing) override;
    database::Omissions omissionsOf(std::string const& what, database::Extras const& extras,
                                    std::set<std::string> const& said) const override;
    Translation expression(std::string const& sql) const override;
    void writeTable(int table) override;
    std::string acceptedTable(int table) override;
    std::string tableOptions(database::Table const& table) const override;
    std::string typeText(database::Column const& column) const override;
    std::string collationText(database::Extras const& extras) const override;
    std::string conflictText(database::Extras const& extras) const override;
    std::string keysInColumn(int table, int column) const override;
    bool standsInColumn(database::Key const& key) const override;
    std::string keyColumns(database::Key const& key) override;
    std::string nameOf(database::Index const& index) override;
    bool namesColumns(database::Table const& view) const override;
    bool writeAccepted(std::string const& what, std::string const& text) override;
    void writeReferences() override;
    void writeTrigger(std::string const& what, database::Trigger const& trigger) override;

    database::Key const* columnKeyOf(int table) const;
    std::string primaryKeyText(database::Key const& key) const;
};

} // namespace sqlite
