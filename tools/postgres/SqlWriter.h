#pragma once

#include "database/SqlWriter.h"
#include "postgres/CatalogKinds.h"
#include "postgres/ForeignStructure.h"
#include "postgres/StatementOrder.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace postgres {

/// Writes SQL that creates a structure of PostgreSQL in an empty database: each object comes after those that
/// it needs. Whether the structure has been translated to be one decides which of the derived classes does
/// so.
class SqlWriter : public database::SqlWriter {
public:
    using database::SqlWriter::SqlWriter;

protected:
    using Creations = std::vector<Creation>;

    // ---- what depends on where the structure comes from ----------------------------------------------
    void statement(std::string const& text) override;
    virtual void writeSchemaComment(database::Schema const& schema);
    /// Reports what the translation left out, at its place.
    virtual void tellOmissions(database::Omissions ForeignStructure::*) {}
    virtual void tellOmissionsOfTable(int /*table*/) {}

    void comment(std::string const& kind, std::string const& name, std::string const& text);

private:
    // ---- the flow: SqlWriter.cpp
    void begin() override;
    void writeTables() override;
    void writeIndexes() override;
    void writeReferences() override;
    void writeTriggers() override;
    void end() override;
    void writeSettings();
    void writeSchemas();
    void writeCatalogExtras(Moment moment);
    void writeParts();
    void writeForeignKeys();
    void writeForeignKey(database::Key const& key);
    bool isNamedByParent(database::Key const& key) const;
    int depthOf(int table) const;
    void writeExtensionNeeds();
    std::string indexText(database::Index const& index);
    std::string memberText(database::Index const& index, database::IndexMember const& member);

    // ---- types, sequences, tables, functions and views, in an order that works: ObjectWriting.cpp
    void writeObjects();
    void addTypes(Creations& creations);
    void addSequences(Creations& creations);
    void addCatalogExtras(Creations& creations, Moment moment);
    void addTables(Creations& creations);
    void addPartitions(Creations& creations);
    void addRoutines(Creations& creations);
    std::string typeStatement(database::Type const& type, int index, bool isBare = false);
    std::string domainStatement(database::Type const& type, int index, bool isBare);
    std::string restOfDomain(int index);

    // ---- tables and views: TableWriting.cpp
    std::string tableStatement(database::Table const& table, int index, bool isBare = false);
    std::vector<std::string> tableParts(database::Table const& table, int index, bool isBare);
    static std::string serverText(database::Table const& table);
    static std::string storageText(database::Table const& table);
    std::string restOfTable(int index);
    std::string restOfDefault(int table, database::Column const& column);
    std::string columnText(database::Table const& table, database::Column const& column, bool isBare);
    static std::string identityText(database::Column const& column);
    std::string keyText(database::Key const& key) override;
    std::string keyColumns(database::Key const& key) override;
    std::string keyOptions(database::Key const& key) override;
    std::string referenceText(database::Key const& key) override;
    std::string checkText(database::Check const& check);
    std::string viewStatement(database::Table const& table);
    std::string emptyView(database::Table const& table);

    // ---- what can't be said where a thing is made: AlterationWriting.cpp
    void findLateDefaults();
    void addLateDefaults(int table, std::string const& name);
    bool isLateDefault(database::Table const& table, database::Column const& column) const;
    database::Column inheritedColumn(database::Table const& table, std::string const& name,
                                     std::size_t depth = 0) const;
    bool isLaterCheckOfParent(database::Table const& table, std::string const& name) const;
    void writeAlterations();
    void writeTableAlterations(int index);
    void writeIndexUse(int table, database::Named const& index, bool isClustered);
    void writeColumnAlterations(database::Table const& table);
    void writeColumnAlterations(database::Table const& table, database::Column const& column);
    void writeTableExtras();

    // ---- comments: CommentWriting.cpp
    void writeComments();
    void writeTypeComments();
    void writeTableComments();
    void writeConstraintComments(int table);

    // ---- names and facts
    std::string quoted(std::string const& name) const override;
    std::string tableName(int table) const override;
    std::string schemaName(int schema) const;
    std::string qualified(int schema, std::string const& name) const;
    std::string typeName(int type) const;
    static bool isPartition(database::Table const& table);
    bool isPartitioned(int table) const;
    bool isWritten(database::Index const& index) const;
    bool isInPartitions(int table) const;
    bool isInherited(int table, database::Named const& thing) const;

    std::set<std::pair<int, std::string>> lateDefaults; ///< table and column; set once all tables are made
};

/// Writes a structure that comes from PostgreSQL as it stands there.
class OwnWriter : public SqlWriter {
public:
    using SqlWriter::SqlWriter;

private:
    void statement(std::string const& text) override;
    void writeSchemaComment(database::Schema const& schema) override;
};

/// Writes what a structure of another system has been translated to, with what had to be left out.
class TranslatedWriter : public SqlWriter {
public:
    TranslatedWriter(ForeignStructure const& toWrite, std::ostream& stream)
        : SqlWriter(toWrite.structure, stream), translated(toWrite) {}

private:
    void tellOmissions(database::Omissions ForeignStructure::*which) override;
    void tellOmissionsOfTable(int table) override;

    ForeignStructure const& translated;
};

} // namespace postgres
