// What callbacks may do to the objects under way, as QORObject.h says.

#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QOREncodingConverter.h>
#include <qor/QORGrouping.h>
#include <qor/QORTraversalOperation.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace {

/// Notes the names and calls a function for each object before its children; the walk goes on below if that
/// returns true.
class Visiting : public QORTraversalOperation {
public:
    explicit Visiting(std::function<bool(QORObject*)> function) : act(std::move(function)) {}
    bool pre_process(QORObject* object, void*&) override {
        visited.push_back(object->getName().chars);
        return act(object);
    }

    Labels visited;

private:
    std::function<bool(QORObject*)> act;
};

Labels visit(QORObject& top, std::function<bool(QORObject*)> function) {
    Visiting operation(std::move(function));
    top.depthTraversal(operation, nullptr);
    return operation.visited;
}

bool isNamed(QORObject const* object, char const* name) {
    return object->getName() == name;
}

/// A package "top" with packages "a" to "d", of which "b" has one more, "below".
std::unique_ptr<QORDesignPackage> packages() {
    std::unique_ptr<QORDesignPackage> top(named<QORDesignPackage>("top"));
    for (char const* name : {"a", "b", "c", "d"})
        top->addChildPackage(named<QORDesignPackage>(name));
    static_cast<QORDesignPackage*>(top->getChildPackage(1))
        ->addChildPackage(named<QORDesignPackage>("below"));
    return top;
}

/// Calls a function while it is re-encoded, before its own texts.
class Recoded : public QORDesignPackage {
public:
    explicit Recoded(std::function<void()> function) : act(std::move(function)) {}
    void transcode(QOREncodingConverter* from, QOREncodingConverter* to, int& firstCounter,
                   int& errorCounter) override {
        act();
        QORDesignPackage::transcode(from, to, firstCounter, errorCounter);
    }

private:
    std::function<void()> act;
};

void transcode(QORObject& object) {
    Recoding recode("ISO-8859-1", "UTF-8");
    recode(object);
    EXPECT_EQ(0, recode.errors);
}

QORDesignPackage* commented(char const* name) {
    auto* const package = named<QORDesignPackage>(name);
    package->setComment("\xE4");
    return package;
}

constexpr char const* recoded = "\xC3\xA4";

} // namespace

TEST(Callbacks, PreProcessMayDeleteItsObjectIfItReturnsFalse) {
    auto const top = packages();
    auto const deleteSome = [](QORObject* object) {
        bool const goes = isNamed(object, "b") || isNamed(object, "d");
        if (goes)
            delete object;
        return !goes;
    };
    EXPECT_EQ((Labels{"top", "a", "b", "c", "d"}), visit(*top, deleteSome));
    EXPECT_EQ(2, top->getChildPackageCount());
}

TEST(Callbacks, TheVisitedObjectMayBeUnlinkedAndIsWalkedToItsEnd) {
    auto const top = packages();
    std::unique_ptr<QORObject> unlinked;
    auto const unlink = [&](QORObject* object) {
        if (isNamed(object, "b")) {
            object->removeAggregationAssembly();
            unlinked.reset(object);
        }
        return true;
    };
    EXPECT_EQ((Labels{"top", "a", "b", "below", "c", "d"}), visit(*top, unlink));
    EXPECT_EQ(3, top->getChildPackageCount());
}

TEST(Callbacks, TheVisitedObjectMayMoveToAnOwnerAheadAndIsVisitedThereToo) {
    auto const top = packages();
    auto* const c = static_cast<QORDesignPackage*>(top->getChildPackage(2));
    auto const move = [&](QORObject* object) {
        if (isNamed(object, "b") && object->getParent() == top.get()) {
            object->removeAggregationAssembly();
            c->addChildPackage(static_cast<QORDesignPackage*>(object));
        }
        return true;
    };
    EXPECT_EQ((Labels{"top", "a", "b", "below", "c", "b", "below", "d"}), visit(*top, move));
}

TEST(Callbacks, RenamingWhateverIsVisitedBringsAVectorsElementsAgainAndAgain) {
    QORGrouping top;
    top.setName("top");
    top.addChildGrouping(named<QORGrouping>("a"));
    top.addChildGrouping(named<QORGrouping>("b"));
    int renamed = 0;
    auto const rename = [&](QORObject* object) {
        if (object != &top && renamed < 6)
            object->setName(++renamed);
        return true;
    };
    EXPECT_EQ((Labels{"top", "a", "b", "1", "2", "3", "4", "5", "6"}), visit(top, rename));
}

TEST(Callbacks, RenamingAfterTheWalkReachesEachObjectOnce) {
    auto const top = packages();
    std::vector<QORObject*> collected;
    visit(*top, [&](QORObject* object) {
        collected.push_back(object);
        return true;
    });
    for (QORObject* const object : collected)
        object->setName(object->getName() + "-renamed");
    EXPECT_EQ((Labels{"top-renamed", "a-renamed", "b-renamed", "below-renamed", "c-renamed", "d-renamed"}),
              visit(*top, [](QORObject*) { return true; }));
}

TEST(Callbacks, WhatIsUnlinkedWhileItsOwnerIsRecodedIsRecodedNevertheless) {
    QORDesignPackage top;
    auto const other = std::unique_ptr<QORDesignPackage>(commented("z"));
    auto* const first = new Recoded([&] { top.removeChildPackage(other.get()); });
    first->setName("a");
    top.addChildPackage(first);
    top.addChildPackage(other.get());
    transcode(top);
    EXPECT_EQ(1, top.getChildPackageCount());
    EXPECT_STREQ(recoded, other->getComment().chars);
}

TEST(Callbacks, WhatIsRenamedWhileItsOwnerIsRecodedIsRecodedOnce) {
    QORDesignPackage top;
    auto* const other = commented("z");
    auto* const first = new Recoded([&] { other->setName("0"); });
    first->setName("a");
    top.addChildPackage(first);
    top.addChildPackage(other);
    transcode(top);
    EXPECT_STREQ(recoded, other->getComment().chars);
    EXPECT_EQ(other, top.getChildPackage(0));
}

TEST(Callbacks, WhatIsAddedToAnEndWhileThatIsRecodedStaysAsItIs) {
    QORDesignPackage top;
    auto* const other = commented("z");
    auto* const later = new QORClass;
    later->setName("later");
    later->setComment("\xE4");
    auto* const first = new Recoded([&] {
        top.addChildPackage(other);
        top.addModelElement(later);
    });
    first->setName("a");
    top.addChildPackage(first);
    transcode(top);
    EXPECT_STREQ("\xE4", other->getComment().chars);
    EXPECT_STREQ(recoded, later->getComment().chars) << "its end was yet to be read";
}
