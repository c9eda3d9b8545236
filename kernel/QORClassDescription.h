#pragma once

#include <qor/QORElementType.h>
#include <qor/QORMetaLinkType.h>

#include <cstdint>
#include <typeinfo>

/// How a link end is held.
enum class QOREndShape : std::uint8_t { UNARY, TREE, VECTOR };

/// One link end as the recipe sees it.
struct QORLinkEnd {
    std::uint16_t offset; ///< of the field in the object, in bytes
    std::uint16_t far;    ///< the end that answers this one, by QORAssociationType
    QOREndShape shape;
    std::uint8_t type;     ///< QORMetaLinkType
    std::uint8_t owner;    ///< element type of the class that declares the end
    std::uint8_t bit;      ///< the place of the end among all ends of an object, from the root class down
    bool leftToDestructor; ///< a child end that recursiveDelete leaves alone
    bool keyed;            ///< sorted by what may change while an element is in it, such as its name
};

/// A constant list of ends by QORAssociationType, or of field offsets.
struct QORIndexList {
    std::uint16_t const* first;
    std::uint16_t count;

    std::uint16_t const* begin() const { return first; }
    std::uint16_t const* end() const { return first + count; }
};

/// A class as the recipe sees it: constant data that the generator makes from the class's table and those of
/// its bases. "Own" means declared by the class itself, "down" from the root class to this one, "up" the
/// reverse.
struct QORClassDescription {
    std::type_info const* type;
    char const* displayName;
    QORElementType elementType;
    QORIndexList own;      ///< own ends, in field order
    QORIndexList ends;     ///< all ends, up, in field order
    QORIndexList parents;  ///< all parent ends, up
    QORIndexList children; ///< all child ends, down, of each class the unary ones first
    /// What recursiveDelete undoes, down: of each class its children, then the other ends.
    QORIndexList takeApart;
    /// By the bit of an end: its place in `takeApart`, from 1 on; 255 if it isn't there.
    std::uint8_t const* takeApartPlaces;
    std::uint64_t linkBits;   ///< the bits of all ends
    std::uint64_t parentBits; ///< the bits of `parents`
    std::uint64_t childBits;  ///< the bits of `children`
    QORIndexList strings;     ///< offsets of all QORString attributes but the name, up
};

/// The metamodel as constant data, made by the generator from the class tables.
struct QORMetamodel {
    /// All link ends, by QORAssociationType; the place of a retired one is empty.
    static QORLinkEnd const ends[];
    /// The offsets of text attributes, one list behind the other.
    static std::uint16_t const strings[];
    /// The descriptions by element type; null for retired ones.
    static QORClassDescription const* const descriptions[];
    /// One more than the highest element type.
    static int const descriptionCount;

    static QORClassDescription const& description(QORElementType type) { return *descriptions[type]; }
};
