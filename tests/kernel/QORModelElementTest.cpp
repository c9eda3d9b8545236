#include <qor/QORModelElement.h>

#include <qor/QORAssociation.h>
#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDependency.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORException.h>
#include <qor/QORMetaClass.h>
#include <qor/QORNote.h>
#include <qor/QORReport.h>
#include <qor/QORSQLViewEntity.h>
#include <qor/QORSynonym.h>

#include "Mortal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace {

class Plain : public QORModelElement {};

std::string refusalOf(QORObject& object, char const* name) {
    try {
        object.setName(name);
    } catch (QORException const& refusal) {
        return refusal.what();
    }
    return "";
}

char const* const refused =
    "[QORSDK_F0001] Illegal Argument: The DesignPackage already contains a ModelElement with this name\n";

} // namespace

TEST(QORModelElement, IsAbstractAndKnowsItsBases) {
    EXPECT_FALSE(std::is_default_constructible<QORModelElement>::value);
    QORMetaClass const* const meta = QORModelElement::getStaticMetaClass();
    EXPECT_TRUE(meta->isAbstract());
    EXPECT_STREQ("ModelElement", meta->getDisplayName().chars);
    EXPECT_EQ(QORModelObject::getStaticMetaClass(), meta->getParent());
    Plain const element;
    for (int type = 0; type <= 150; ++type)
        EXPECT_EQ(type == QORElementType::MODEL_ELEMENT || type == QORElementType::MODEL_OBJECT ||
                      type == QORElementType::ELEMENT || type == QORElementType::OBJECT,
                  element.isInstanceOf(static_cast<QORElementType>(type)))
            << type;
}

TEST(QORModelElement, TheDesignPackageIsItsParent) {
    QORDesignPackage package;
    Plain element;
    EXPECT_EQ(nullptr, element.getParent());
    EXPECT_EQ(0, element.getParentCount());
    element.addDesignPackage(&package);
    EXPECT_EQ(&package, element.getParent());
    EXPECT_EQ(1, element.getParentCount());
    EXPECT_TRUE(element.isReferenced());
    EXPECT_EQ(&package, element.removeAggregationAssembly());
    EXPECT_EQ(nullptr, element.removeAggregationAssembly());
    EXPECT_FALSE(element.isReferenced());
}

TEST(QORModelElement, ADiagramRefersToIt) {
    QORClassDiagram diagram;
    Plain element;
    element.addDiagram(&diagram);
    EXPECT_TRUE(element.isReferenced());
    EXPECT_FALSE(element.QORModelObject::isReferenced());
    EXPECT_EQ(nullptr, element.getParent());
    EXPECT_TRUE(element.removeDiagram(&diagram));
    EXPECT_FALSE(element.isReferenced());
    EXPECT_FALSE(diagram.isReferenced());
}

TEST(QORModelElement, CopyHasNeitherPackageNorDiagrams) {
    QORDesignPackage package;
    auto* const source = named<QORClass>("c");
    package.addModelElement(source);
    QORClassDiagram diagram;
    diagram.addNote(new QORNote);
    source->addDiagram(&diagram);
    QORClass const copy(*source);
    EXPECT_EQ(nullptr, copy.getDesignPackage());
    EXPECT_EQ(0, copy.getDiagramCount());
    EXPECT_EQ(1, source->getDiagramCount());
    source->removeDiagram(&diagram);
}

TEST(QORModelElement, RecursiveDeleteIsRefusedInsideAPackage) {
    QORDesignPackage package;
    auto* const element = new QORClass;
    package.addModelElement(element);
    element->addNote(new QORNote);
    element->addSynonym(new QORSynonym);
    EXPECT_FALSE(element->recursiveDelete());
    EXPECT_FALSE(element->QORModelElement::recursiveDelete());
    EXPECT_EQ(1, element->getNoteCount());
    EXPECT_EQ(1, element->getSynonymCount());
    EXPECT_EQ(&package, element->getDesignPackage());
    delete element;
    EXPECT_EQ(0, package.getModelElementCount());
}

TEST(QORModelElement, RecursiveDeleteEndsUnreferencedDiagramsLast) {
    EventLog deaths;
    Plain element;
    element.addDiagram(mortal<QORClassDiagram>(deaths, "diagram"));
    element.addSynonym(mortal<QORSynonym>(deaths, "synonym"));
    EXPECT_TRUE(element.recursiveDelete());
    EXPECT_EQ((EventLog{"synonym", "diagram"}), deaths);
}

TEST(QORModelElement, IsolateWithDeletionTakesPackageAndDiagramsFirst) {
    EventLog deaths;
    Plain element;
    element.addSynonym(mortal<QORSynonym>(deaths, "synonym"));
    element.addDiagram(mortal<QORClassDiagram>(deaths, "diagram"));
    element.addDesignPackage(mortal<QORDesignPackage>(deaths, "package"));
    EXPECT_EQ(&element, element.isolate(true));
    EXPECT_EQ((EventLog{"package", "diagram", "synonym"}), deaths);
}

TEST(QORModelElement, IsolateWithoutDeletionOnlyUnlinks) {
    QORDesignPackage package;
    QORClassDiagram diagrams[2];
    Plain element;
    element.addDesignPackage(&package);
    for (QORClassDiagram& diagram : diagrams)
        element.addDiagram(&diagram);
    EXPECT_EQ(&element, element.isolate(false));
    EXPECT_FALSE(element.isReferenced());
    EXPECT_FALSE(package.isReferenced());
    for (QORClassDiagram const& diagram : diagrams)
        EXPECT_FALSE(diagram.isReferenced());
}

TEST(QORModelElement, NamingWithoutAPackageNeverThrows) {
    Plain element;
    EXPECT_NO_THROW(element.setName("x"));
    EXPECT_NO_THROW(element.setName("x"));
    EXPECT_STREQ("x", element.getName().chars);
}

TEST(QORModelElement, ATakenNameIsRefusedAndItStaysUnderItsOldOne) {
    QORDesignPackage package;
    auto* const a = named<QORClass>("a");
    auto* const b = named<QORClass>("b");
    package.addModelElement(a);
    package.addModelElement(b);
    EXPECT_EQ(refused, refusalOf(*b, "a"));
    EXPECT_STREQ("b", b->getName().chars);
    EXPECT_EQ(&package, b->getDesignPackage());
    EXPECT_EQ(a, package.getModelElement(0));
    EXPECT_EQ(b, package.getModelElement(1));
    b->setName("c");
    a->setName("d");
    EXPECT_EQ(b, package.getModelElement(0));
    EXPECT_EQ(a, package.getModelElement(1));
}

TEST(QORModelElement, RelationshipsOfOneClassMayShareAName) {
    QORDesignPackage package;
    auto* const a = named<QORAssociation>("a");
    auto* const b = named<QORAssociation>("b");
    package.addModelElement(a);
    package.addModelElement(b);
    EXPECT_NO_THROW(a->setName("b"));
    EXPECT_EQ(2, package.getModelElementCount());
    auto* const c = named<QORDependency>("c");
    package.addModelElement(c);
    EXPECT_NO_THROW(c->setName("b"));
}

TEST(QORModelElement, ViewsShareTheNamesOfClassesAndReportsDoNot) {
    QORDesignPackage package;
    package.addModelElement(named<QORClass>("a"));
    auto* const view = named<QORSQLViewEntity>("v");
    auto* const report = named<QORReport>("r");
    package.addModelElement(view);
    package.addModelElement(report);
    EXPECT_EQ(refused, refusalOf(*view, "a"));
    EXPECT_STREQ("v", view->getName().chars);
    EXPECT_EQ("", refusalOf(*report, "a"));
    EXPECT_STREQ("a", report->getName().chars);
    EXPECT_EQ(3, package.getModelElementCount());
}

TEST(QORModelElement, TranscodeIsThatOfTheModelObject) {
    std::unique_ptr<QOREncodingConverter> const latin(QOREncodingConverter::create("ISO-8859-1"));
    std::unique_ptr<QOREncodingConverter> const utf8(QOREncodingConverter::create("UTF-8"));
    int converted = 0;
    int failed = 0;
    Plain element;
    element.setName("\xE9");
    element.setComment("\xE9");
    element.addSynonym(named<QORSynonym>("\xE9"));
    QORClassDiagram diagram;
    diagram.setName("\xE9");
    element.addDiagram(&diagram);
    element.transcode(latin.get(), utf8.get(), converted, failed);
    EXPECT_EQ(3, converted);
    EXPECT_STREQ("\xE9", diagram.getName().chars);
    element.removeDiagram(&diagram);
}
