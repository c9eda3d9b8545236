#include "Graph.h"

#include <qor/QORComponent.h>
#include <qor/QORDirectory.h>
#include <qor/QORNote.h>
#include <qor/QORProduct.h>

TEST(QORComponent, DeletesFreeReferrersThenFreeReferences) {
    Graph graph;
    auto* const directory = graph.make<QORDirectory>();
    auto* const kept = graph.make<QORProduct>();
    directory->addProduct(kept);
    Plain<QORComponent> component;
    component.addReferencedComponent(kept);
    component.addReferencedComponent(graph.mortal<QORProduct>("referenced"));
    component.addReferencedByComponent(graph.mortal<QORProduct>("referrer"));
    component.addNote(graph.mortal<QORNote>("note"));
    EXPECT_TRUE(component.recursiveDelete());
    EXPECT_EQ(graph.deaths, (Labels{"note", "referrer", "referenced"}));
    EXPECT_EQ(kept->getReferencedByComponentCount(), 0);
    EXPECT_EQ(kept->getDirectory(), directory);
}

TEST(QORComponent, IsolatesReferrersThenReferences) {
    Graph graph;
    Plain<QORComponent> component;
    component.addNote(graph.mortal<QORNote>("note"));
    component.addReferencedComponent(graph.mortal<QORProduct>("referenced"));
    component.addReferencedByComponent(graph.mortal<QORProduct>("referrer"));
    EXPECT_EQ(component.isolate(true), &component);
    EXPECT_EQ(graph.deaths, (Labels{"referrer", "referenced", "note"}));
}

TEST(QORComponent, ReencodesItsTextsAndWalksNoReference) {
    Graph graph;
    auto* const component = graph.make<Plain<QORComponent>>();
    auto* const referenced = graph.make<QORProduct>(inUtf8);
    component->addReferencedComponent(referenced);
    component->setAuthor(inUtf8);
    EXPECT_EQ(walkOf(*component), Objects{component});
    Recoding recode;
    recode(*component);
    EXPECT_STREQ(component->getAuthor().chars, inLatin1);
    EXPECT_STREQ(referenced->getName().chars, inUtf8);
}
