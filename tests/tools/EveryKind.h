#pragma once

#include "TemporaryFolder.h"
#include "exchange/Attributes.h"
#include "kit/Graph.h"
#include "kit/LinkEnds.h"
#include "kit/Reflection.h"

#include <qor/QORMetaRepository.h>

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

/// The records of all classes of which there are objects.
inline std::vector<QORMetaClass*> concreteClasses() {
    std::vector<QORMetaClass*> all{
        QORMetaRepository::getMetaRepository()->getMetaClassByDisplayName("Object")};
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (QORMetaClass* below : kit::recordsOf<QORMetaClass>(all[i]->getSubclasses())) {
            all.push_back(below);
        }
    }
    std::vector<QORMetaClass*> concrete;
    for (QORMetaClass* metaClass : all) {
        if (QORObject* object = metaClass->newInstance()) {
            delete object;
            concrete.push_back(metaClass);
        }
    }
    return concrete;
}

/// A graph of several objects of every class, each attribute with a value of its own where it takes one, and
/// links of every kind.
class EveryKind {
public:
    EveryKind() : words(enumerationWords()) {
        for (int copy = 0; copy < 3; ++copy) {
            for (QORMetaClass* metaClass : concreteClasses()) {
                add(*metaClass);
            }
        }
        linkAll();
    }

    kit::Graph graph;
    std::set<QORAssociationType> linked; ///< of all links the end that owns or refers
    std::set<QORAttributeType> changed;  ///< the attributes that some object has another value of

private:
    static std::vector<std::string> enumerationWords() {
        std::string const tables = contentOf(QOR_SOURCE_DIR "/meta/enumerations.toml");
        std::regex const word("\"([A-Z][A-Z0-9_]*)\"");
        std::vector<std::string> found;
        for (std::sregex_iterator match(tables.begin(), tables.end(), word), end; match != end; ++match) {
            found.push_back((*match)[1]);
        }
        return found;
    }

    void add(QORMetaClass& metaClass) {
        QORObject* const object = metaClass.newInstance();
        graph.adopt(object);
        for (QORMetaAttribute const* attribute : exchange::inSettingOrder(metaClass)) {
            change(*object, *attribute);
        }
    }

    void change(QORObject& object, QORMetaAttribute const& attribute) {
        QORString const before = attribute.getValue(&object);
        std::string const number = std::to_string(graph.objects().size());
        switch (attribute.getType()) {
        case QORMetaAttributeType::BOOL:
            exchange::setAttribute(object, attribute, before == "true" ? "false" : "true");
            break;
        case QORMetaAttributeType::STRING:
            exchange::setAttribute(object, attribute, ("text \"\\\n\x01\xc3\xa9" + number).c_str());
            break;
        case QORMetaAttributeType::INT:
        case QORMetaAttributeType::SHORT:
            exchange::setAttribute(object, attribute, ("-" + number).c_str());
            break;
        case QORMetaAttributeType::DATE:
            exchange::setAttribute(object, attribute, "12:34:56 2001-02-03");
            break;
        case QORMetaAttributeType::ENUM:
            changeEnumeration(object, attribute);
            break;
        }
        if (attribute.getValue(&object) != before) {
            changed.insert(attribute.getId());
        }
    }

    void changeEnumeration(QORObject& object, QORMetaAttribute const& attribute) {
        QORString const before = attribute.getValue(&object);
        for (std::string const& word : words) {
            if (word.c_str() != before && exchange::setAttribute(object, attribute, word.c_str())) {
                return;
            }
        }
    }

    void linkAll() {
        std::vector<QORObject*> const& objects = graph.objects();
        for (std::size_t near = 0; near < objects.size(); ++near) {
            for (QORMetaLink const* role : kit::linksOf(*objects[near])) {
                if (kit::isNearEnd(*role)) {
                    link(near, *role);
                }
            }
        }
    }

    /// Links an object with up to two others, the last ones first, so that the order of links isn't that of
    /// the objects. No owners form a ring.
    void link(std::size_t near, QORMetaLink const& role) {
        std::vector<QORObject*> const& objects = graph.objects();
        int made = 0;
        for (std::size_t far = objects.size(); far-- > 0 && made < 2;) {
            bool const owning = role.getType() == QORMetaLinkType::CHILD;
            if (far == near || !objects[far]->isInstanceOf(role.getFarMetaClass()->getId()) ||
                (owning && owns(*objects[far], *objects[near]))) {
                continue;
            }
            if (role.addLink(objects[near], objects[far])) {
                ++made;
                linked.insert(role.getId());
            }
        }
    }

    static bool owns(QORObject const& owner, QORObject& object) {
        std::vector<QORObject*> owners{&object};
        for (std::size_t i = 0; i < owners.size(); ++i) {
            if (owners[i] == &owner) {
                return true;
            }
            for (QORMetaLink const* link : kit::linksOf(*owners[i])) {
                if (link->getType() == QORMetaLinkType::PARENT && link->getLink(owners[i], 0)) {
                    owners.push_back(link->getLink(owners[i], 0));
                }
            }
        }
        return false;
    }

    std::vector<std::string> words;
};
