#pragma once

#include "exchange/TextPosition.h"
#include "kit/Graph.h"

#include <qor/QORString.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

class QORMetaAttribute;
class QORMetaClass;
class QORMetaLink;
class QORObject;

namespace exchange {

/// A mistake in a file; the reader adds its position.
class Mistake : public std::runtime_error {
public:
    explicit Mistake(std::string const& what, TextPosition at = {})
        : std::runtime_error(what), position(at) {}

    TextPosition position; ///< unknown: the reader's current position
};

/// A value as written in a file.
struct Scalar {
    enum Kind { TEXT, NUMBER, TRUTH } kind;
    std::string text;
};

/// Makes objects, sets their attributes and links them, by the names in reflection. Throws Mistake for what
/// doesn't exist, and for what the objects refuse.
class GraphBuilder {
public:
    /// Begins an object. The number must be a new one.
    void beginObject(std::uint64_t number, std::string const& className, TextPosition position = {});
    /// Keeps an attribute of that object, whose class must have it.
    void addAttribute(std::string const& name, Scalar const& value, TextPosition position);
    /// Keeps an attribute, known to be of the class, with a value that is of its kind.
    void addAttribute(QORMetaAttribute const& attribute, QORString const& value);
    /// Sets the attributes in the order that the class requires.
    void endObject();

    /// The object of a number, which must exist.
    QORObject& object(std::uint64_t number) const;
    /// Chooses the end for the links that follow.
    void beginLinks(std::uint64_t from, std::string const& role);
    void addLink(std::uint64_t to);
    /// The same; if an object's name is taken there, appends a slash and a number to it and returns
    /// true.
    bool addLinkUnderFreeName(std::uint64_t to);

    /// The finished graph. It must have an object, and links of any kind must lead from the first one
    /// to all others.
    kit::Graph take();

private:
    struct Setting {
        QORMetaAttribute const* attribute;
        QORString text;
        TextPosition position;
    };

    /// An object with one of those that links lead to from it, or with itself.
    struct Entry {
        QORObject* object;
        std::uint64_t towards;
        TextPosition position;
    };

    std::uint64_t representativeOf(std::uint64_t number);
    QORObject& linkable(std::uint64_t number);
    [[noreturn]] void refuse(std::uint64_t to, char const* reason) const;
    void checkKind(QORMetaAttribute const& attribute, Scalar const& value) const;

    kit::Graph graph;
    std::unordered_map<std::uint64_t, Entry> byNumber;
    std::vector<std::uint64_t> numbers; ///< in the order of the objects
    QORObject* current = nullptr;
    std::uint64_t currentNumber = 0;
    std::vector<Setting> settings;
    QORMetaLink const* role = nullptr;
};

} // namespace exchange
