#include "kit/Verify.h"

#include "kit/Reflection.h"

#include <qor/QORAttribute.h>
#include <qor/QORBaseType.h>
#include <qor/QORCandidateKey.h>
#include <qor/QORClass.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORMetaRepository.h>
#include <qor/QORModel.h>

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using kit::verify;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// What is set on these behind the library's back is taken back before the objects go.
class LooseClass : public QORClass {
public:
    QORNameLinkTree& features() { return feature_; }
    QORPtrLinkTree& keys() { return key_; }
    QORPtrLinkTree& suppliers() { return supplierOfDependency_; }
    bool drop(QORContainer& end, QORObject* object) { return _removen(&end, object); }

    /// Makes this end of a link alone: the other one is a pointer that nobody reads.
    bool hold(QORContainer& end, QORObject* object) {
        QORObject* stray = nullptr;
        return _addnu(&end, &stray, object);
    }
};

class LooseAttribute : public QORAttribute {
public:
    void setOwnerAlone(QORObject* owner) { classifier_.far = owner; }
    void setTypeAlone(QORObject* type) { type_.far = type; }
};

class LooseType : public QORBaseType {
public:
    QORPtrLinkTree& features() { return feature_; }
};

class LoosePackage : public QORDesignPackage {
public:
    QORPtrLinkVector& imported() { return importedModelObject_; }
    QORNameElementTypeLinkTree& packages() { return childPackage_; }
};

/// A class that shows a walk another object than the one it owns.
class MisleadingClass : public QORClass {
public:
    void _depthTraversal(QORTraversalOperation& operation, void* data) override {
        shown.depthTraversal(operation, data);
    }

    QORAttribute shown;
};

template <class Class>
Class* named(char const* name) {
    auto* object = new Class;
    object->setName(name);
    return object;
}

/// The class itself if its objects can be made, else one below it.
QORMetaClass* concreteOf(QORMetaClass* metaClass) {
    if (!metaClass->isAbstract()) {
        return metaClass;
    }
    for (QORMetaClass* below : kit::recordsOf<QORMetaClass>(metaClass->getSubclasses())) {
        if (QORMetaClass* concrete = concreteOf(below)) {
            return concrete;
        }
    }
    return nullptr;
}

/// The text of a link end's id ends with the class at its other end.
QORMetaClass* farClassOf(QORMetaLink const& link) {
    std::string const text = link.getName().chars;
    std::string const far = text.substr(text.rfind("__") + 2);
    return QORMetaRepository::getMetaRepository()->getMetaClassByID(getElementTypeByName(far.c_str()));
}

TEST(Verify, FindsNothingAtAnyLinkThatTheLibraryMakes) {
    int links = 0;
    for (int id = 0; QorAssociationTypeStringArray[id]; ++id) {
        auto const linkId = static_cast<QORAssociationType>(id);
        QORMetaLink* const link = QORMetaRepository::getMetaRepository()->getMetaLinkByID(linkId);
        if (!link) {
            EXPECT_STREQ("", QorAssociationTypeStringArray[id]) << "only a retired end has no record";
            continue;
        }
        SCOPED_TRACE(link->getName().chars);
        std::unique_ptr<QORObject> const near(concreteOf(link->getMetaClass())->newInstance());
        std::unique_ptr<QORObject> const far(concreteOf(farClassOf(*link))->newInstance());
        ASSERT_TRUE(link->addLink(near.get(), far.get()));
        EXPECT_THAT(verify(*near), IsEmpty());
        EXPECT_THAT(verify(*far), IsEmpty());
        near->isolate(false);
        EXPECT_THAT(verify(*near), IsEmpty());
        ++links;
    }
    EXPECT_GT(links, 0);
}

TEST(Verify, FindsNothingInAModelWithManyLinks) {
    QORModel model;
    auto* package = named<QORDesignPackage>("p");
    model.addChildPackage(package);
    auto* type = named<QORBaseType>("int");
    model.addType(type);
    for (int i = 0; i < 30; ++i) {
        auto* table = named<QORClass>(std::to_string(i).c_str());
        package->addModelElement(table);
        package->addImportedModelObject(table);
        auto* key = new QORCandidateKey;
        table->addKey(key);
        table->addPrimaryCandidateKey(key);
        for (int j = 0; j < 30; ++j) {
            auto* column = named<QORAttribute>(std::to_string(j).c_str());
            table->addFeature(column);
            column->addType(type);
            key->addAttribute(column);
        }
    }
    EXPECT_THAT(verify(model), IsEmpty());
}

TEST(Verify, FindsAChildThatDoesNotNameItsOwner) {
    LooseClass table;
    table.setName("table");
    QORAttribute column;
    column.setName("column");
    table.hold(table.features(), &column);
    EXPECT_THAT(verify(table),
                ElementsAre("Class \"table\" feature holds Attribute \"column\", which doesn't name "
                            "it as its owner"));
    table.drop(table.features(), &column);
}

TEST(Verify, FindsAChildWhoseOwnerDoesNotOwnIt) {
    QORClass table;
    table.setName("table");
    LooseAttribute column;
    column.setName("column");
    column.setOwnerAlone(&table);
    EXPECT_THAT(verify(column),
                ElementsAre("Attribute \"column\" classifier holds Class \"table\", which doesn't "
                            "own it"));
    column.setOwnerAlone(nullptr);
}

TEST(Verify, FindsAnOwnerThatHasLostAChild) {
    LooseClass table;
    auto* column = named<QORAttribute>("column");
    table.addFeature(column);
    ASSERT_TRUE(table.drop(table.features(), column));
    EXPECT_THAT(verify(*column), ElementsAre(HasSubstr("Attribute \"column\" classifier holds")));
    table.hold(table.features(), column);
    EXPECT_THAT(verify(*column), IsEmpty());
}

TEST(Verify, FindsAReferenceThatIsNotAnswered) {
    QORBaseType type;
    type.setName("type");
    LooseAttribute column;
    column.setName("column");
    column.setTypeAlone(&type);
    EXPECT_THAT(verify(column),
                ElementsAre("Attribute \"column\" type holds BaseType \"type\", which doesn't answer"));
    column.setTypeAlone(nullptr);
}

TEST(Verify, FindsTheReverseEndOfNoReference) {
    LooseType type;
    type.setName("type");
    QORAttribute column;
    column.setName("column");
    type.features().addElement(&column, true);
    EXPECT_THAT(verify(type),
                ElementsAre("BaseType \"type\" feature holds Attribute \"column\", which doesn't answer"));
    type.features().empty();
}

TEST(Verify, FindsOneHalfLinkBesideASoundOneBetweenTheSameObjects) {
    LooseClass table;
    table.setName("table");
    QORDependency dependency;
    dependency.setName("self");
    table.addDependency(&dependency);
    table.addSupplierOfDependency(&dependency);
    EXPECT_THAT(verify(table), IsEmpty());
    ASSERT_TRUE(table.drop(table.suppliers(), &dependency));
    auto const findings = verify(table);
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_THAT(findings[0], HasSubstr("Dependency \"self\""));
    EXPECT_THAT(findings[0], HasSubstr("hold Class \"table\", which doesn't answer with more than 1"));
    table.suppliers().addElement(&dependency, true);
    dependency.isolate(false);
}

TEST(Verify, FindsWhatIsWrongBehindAReferenceToAnotherGraph) {
    QORModel model;
    auto* type = named<LooseType>("type");
    model.addType(type);
    QORClass table;
    auto* column = named<QORAttribute>("column");
    table.addFeature(column);
    column->addType(type);
    QORAttribute stranger;
    stranger.setName("stranger");
    type->features().addElement(&stranger, true);
    EXPECT_THAT(verify(table), ElementsAre(HasSubstr("holds Attribute \"stranger\"")));
    type->features().removeNode(type->features().nodeOfItem(&stranger));
}

TEST(Verify, FindsAnObjectThatATreeHoldsTwice) {
    LooseClass table;
    table.setName("table");
    auto* key = new QORCandidateKey;
    table.addKey(key);
    table.keys().addElement(key, false);
    EXPECT_THAT(verify(table), ElementsAre("Class \"table\" key holds CandidateKey \"\" more than once"));
    table.keys().removeElement(0);
    EXPECT_THAT(verify(table), IsEmpty());
}

TEST(Verify, FindsAnObjectThatAVectorHoldsTwice) {
    LoosePackage package;
    package.setName("p");
    QORClass table;
    table.setName("table");
    package.addImportedModelObject(&table);
    package.imported().addElement(&table, false);
    EXPECT_THAT(verify(table),
                ElementsAre("DesignPackage \"p\" importedModelObject holds Class \"table\" more than once"));
    package.imported().removeElement(1);
    package.isolate(false);
}

TEST(Verify, FindsAnObjectInItsOwnEnd) {
    LoosePackage package;
    package.setName("p");
    package.addChildPackage(&package); // refused, and yet the package stays in its own end
    EXPECT_THAT(verify(package),
                ElementsAre("DesignPackage \"p\" childPackage holds DesignPackage \"p\", which doesn't name "
                            "it as its owner"));
    package.packages().empty();
}

/// A class with as many columns, whose end then counts more or fewer of them.
std::vector<std::string> findingsWithCount(int columns, int more) {
    LooseClass table;
    table.setName("table");
    for (int i = 0; i < columns; ++i) {
        table.addFeature(named<QORAttribute>(std::to_string(i).c_str()));
    }
    table.features().size += more;
    auto findings = verify(table);
    table.features().size -= more;
    EXPECT_THAT(verify(table), IsEmpty());
    return findings;
}

TEST(Verify, FindsAnEndThatCountsMoreThanItHolds) {
    for (int const columns : {1, 5, 40}) {
        EXPECT_THAT(findingsWithCount(columns, 1), Not(IsEmpty())) << columns;
    }
    EXPECT_THAT(findingsWithCount(5, 1), testing::Contains("Class \"table\" feature counts 6 and holds 5"));
}

TEST(Verify, FindsAnEndThatCountsLessThanItHolds) {
    for (int const columns : {1, 5, 40}) {
        EXPECT_THAT(findingsWithCount(columns, -1), Not(IsEmpty())) << columns;
    }
    EXPECT_THAT(findingsWithCount(5, -1),
                testing::Contains("Class \"table\" has 4 children by position, a walk meets 5"));
}

TEST(Verify, FindsAnEndThatReadFromItsEndGivesOtherObjects) {
    EXPECT_THAT(findingsWithCount(40, -1),
                testing::Contains("Class \"table\" feature returns other objects when read from the end"));
}

TEST(Verify, FindsAWalkThatMeetsOtherObjectsThanThePositionsGive) {
    MisleadingClass table;
    table.setName("table");
    table.addFeature(named<QORAttribute>("column"));
    EXPECT_THAT(verify(table),
                ElementsAre("Class \"table\" feature returns other children by position than a walk"));
}

TEST(Verify, FindingsAreSorted) {
    LooseType type;
    type.setName("type");
    std::vector<QORAttribute> columns(10);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].setName(std::to_string((i * 7) % 10).c_str());
        type.features().addElement(&columns[i], true);
    }
    auto const findings = verify(type);
    EXPECT_EQ(findings.size(), 10u);
    EXPECT_TRUE(std::is_sorted(findings.begin(), findings.end()));
    type.features().empty();
}

TEST(Verify, DeepGraphIsWalked) {
    auto const root = std::make_unique<QORDesignPackage>();
    QORDesignPackage* innermost = root.get();
    for (int i = 0; i < 100000; ++i) {
        auto* inner = new QORDesignPackage;
        innermost->addChildPackage(inner);
        innermost = inner;
    }
    auto* table = named<LooseClass>("table");
    innermost->addModelElement(table);
    EXPECT_THAT(verify(*root), IsEmpty());
    QORAttribute column;
    column.setName("column");
    table->hold(table->features(), &column);
    EXPECT_THAT(verify(*root), ElementsAre(HasSubstr("Attribute \"column\"")));
    table->drop(table->features(), &column);
}

} // namespace
