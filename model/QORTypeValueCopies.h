#pragma once

#include <qor/QORTypeValue.h>

#include <memory>

/// Gives `target` a copy of each type value of `source`, as far as it takes them.
template <class Owner>
void qorCopyTypeValues(Owner const& source, Owner& target) {
    for (int i = 0, count = source.getTypeValueCount(); i < count; ++i) {
        auto copy = std::make_unique<QORTypeValue>(*source.getTypeValue(i));
        if (target.addTypeValue(copy.get()))
            copy.release();
    }
}
