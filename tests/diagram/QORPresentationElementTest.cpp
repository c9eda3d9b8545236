#include "GraphObservers.h"

#include <qor/QORClass.h>
#include <qor/QORClassDiagram.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORPresentationElement.h>
#include <qor/QORProjection.h>
#include <qor/QORRelationshipProjection.h>
#include <qor/QORTypeValue.h>

using namespace graph;

TEST(QORPresentationElement, IsAnAbstractObjectAndNoElement) {
    expectAbstract<QORPresentationElement>(QORElementType::PRESENTATION_ELEMENT, 61, "PresentationElement",
                                           QORObject::getStaticMetaClass());
    EXPECT_FALSE(QORProjection().isInstanceOf(QORElementType::ELEMENT));
}

TEST(QORPresentationElement, ShowsTheNamesOfDiagramAndSubject) {
    Held<QORProjection> projection("its own name");
    Held<QORClassDiagram> diagram("D");
    Held<QORClass> subject("S");
    EXPECT_STREQ(projection->getDisplayName().chars, "_");
    projection->addSubjectModelObject(subject);
    EXPECT_STREQ(projection->getDisplayName().chars, "_S");
    projection->addDiagram(diagram);
    EXPECT_STREQ(projection->getDisplayName().chars, "D_S");
    projection->removeSubjectModelObject(subject);
    EXPECT_STREQ(projection->getDisplayName().chars, "D_");
    diagram->setName("");
    EXPECT_STREQ(projection->getDisplayName().chars, "_");
}

TEST(QORPresentationElement, ShowsTheComputedNameOfAnUnnamedSubject) {
    Held<QORRelationshipProjection> projection;
    Held<QORTypeValue> subject;
    subject->setValue("value");
    projection->addSubjectModelObject(subject);
    EXPECT_STREQ(projection->getDisplayName().chars, "_value");
    subject->setName("name");
    EXPECT_STREQ(projection->getDisplayName().chars, "_name");
    Held<QORClass> unnamed;
    projection->removeSubjectModelObject(subject);
    projection->addSubjectModelObject(unnamed);
    EXPECT_STREQ(projection->getDisplayName().chars, "_");
}

TEST(QORPresentationElement, IsReferencedThroughEachOfItsLinks) {
    using P = QORPresentationElement;
    using Near = Plain<QORPresentationElement>;
    expectReferencedThrough<Near, QORClassDiagram>(&P::addDiagram, &P::removeDiagram);
    expectReferencedThrough<Near, QORClass>(&P::addSubjectModelObject, &P::removeSubjectModelObject);
}

TEST(QORPresentationElement, BelongsToItsDiagram) {
    Held<QORClassDiagram> diagram;
    Held<QORProjection> projection;
    Held<QORClass> subject;
    projection->addSubjectModelObject(subject);
    EXPECT_EQ(projection->getParent(), nullptr);
    EXPECT_EQ(projection->removeAggregationAssembly(), nullptr);
    EXPECT_EQ(projection->getSubjectModelObject(), subject.get());
    diagram->addPresentationElement(projection);
    EXPECT_EQ(projection->getParent(), diagram.get());
    EXPECT_EQ(projection->getParentCount(), 1);
    expectDeletionRefused(*projection);
    EXPECT_EQ(projection->getSubjectModelObject(), subject.get());
    projection->setName("renamed");
    EXPECT_EQ(diagram->getPresentationElement(0), projection.get());
    EXPECT_EQ(projection->removeAggregationAssembly(), diagram.get());
    EXPECT_EQ(diagram->getPresentationElementCount(), 0);
}

TEST(QORPresentationElement, TakesAFreeSubjectWithItAndLeavesAnOwnedOne) {
    Journal journal;
    auto* const projection = watched<QORProjection>(journal, "projection");
    projection->addSubjectModelObject(watched<QORClass>(journal, "subject"));
    delete projection;
    EXPECT_EQ(journal.deaths, (Labels{"projection", "subject"}));
    Held<QORDesignPackage> package;
    Held<QORClass> kept;
    package->addModelElement(kept);
    auto* const other = new QORProjection;
    other->addSubjectModelObject(kept);
    delete other;
    EXPECT_EQ(kept->getPresentationPresentationElementCount(), 0);
}

TEST(QORPresentationElement, LosesItsSubjectWhenThatIsDeleted) {
    Held<QORClassDiagram> diagram;
    Held<QORProjection> kept;
    Journal journal;
    diagram->addPresentationElement(kept);
    auto* const subject = new QORClass;
    kept->addSubjectModelObject(subject);
    subject->addPresentationPresentationElement(watched<QORProjection>(journal, "free"));
    delete subject;
    EXPECT_EQ(kept->getSubjectModelObject(), nullptr);
    EXPECT_EQ(kept->getDiagram(), diagram.get());
    EXPECT_EQ(journal.deaths, Labels{"free"});
}

TEST(QORPresentationElement, IsolatesItsDiagramFirst) {
    Journal journal;
    Plain<QORPresentationElement> element;
    element.addSubjectModelObject(watched<QORClass>(journal, "subject"));
    element.addDiagram(watched<QORClassDiagram>(journal, "diagram"));
    EXPECT_EQ(element.isolate(true), &element);
    EXPECT_EQ(journal.deaths, (Labels{"diagram", "subject"}));
}

TEST(QORPresentationElement, ReencodesItsNameAndIsALeaf) {
    Held<Plain<QORPresentationElement>> element(rawText);
    Held<QORClass> subject(rawText);
    element->addSubjectModelObject(subject);
    EXPECT_EQ(walkOf(*element), Objects{element});
    Recoding recode;
    recode(*element);
    EXPECT_STREQ(element->getName().chars, recodedText);
    EXPECT_STREQ(subject->getName().chars, rawText);
}
