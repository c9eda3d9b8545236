#pragma once

#include "kernel/QORRecipe.h"

#include <qor/QORPtrLinkTree.h>
#include <qor/QORTypeValue.h>

#include <memory>
#include <vector>

/// Copies of all type values of a type or rule, with all the memory that linking them takes.
class QORTypeValueCopies {
public:
    template <class Owner>
    explicit QORTypeValueCopies(Owner const& source) {
        for (int i = 0, count = source.getTypeValueCount(); i < count; ++i) {
            copies.push_back(std::make_unique<QORTypeValue>(*source.getTypeValue(i)));
            staged.add(static_cast<QORObject*>(copies.back().get()), true, nullptr);
        }
    }

    /// Links the copies to an owner of the given class, as far as it takes them. Needs no memory.
    void giveTo(QORObject& owner, QORElementType ownerClass) {
        QORLinkEnd const& parentEnd = QORRecipe::ownEnd(QORElementType::TYPE_VALUE, ownerClass);
        for (auto& copy : copies)
            if (QORRecipe::linkStaged(owner, QORMetamodel::ends[parentEnd.far], *copy, staged))
                copy.release();
    }

    /// Removes the values that an owner of the given class has and links the copies in their place, also
    /// where an override throws, whose exception it then passes on.
    template <class Owner>
    void replaceThoseOf(Owner& owner, QORElementType ownerClass) {
        try {
            owner.removeTypeValues();
        } catch (...) {
            giveTo(owner, ownerClass);
            throw;
        }
        giveTo(owner, ownerClass);
    }

private:
    std::vector<std::unique_ptr<QORTypeValue>> copies;
    QORPtrLinkTree staged; ///< holds a tree node for each copy until it is linked
};
