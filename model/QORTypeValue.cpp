#include <qor/QORTypeValue.h>

#include "kernel/QORRecipe.h"

#include <qor/QORDerivedType.h>

#include <utility>

QORString QORTypeValue::getDisplayName() const {
    return getName().length ? getName() : getValue();
}

QORTypeValue& QORTypeValue::operator=(QORTypeValue const& other) {
    if (this == &other)
        return *this;
    QORModelObject::operator=(other);
    position_ = other.position_;
    setValue(other.value_);
    return *this;
}

/// A derived type sorts unnamed values by their value, so a value under one is taken out and put back. A
/// business rule doesn't see the change: its values keep their places.
void QORTypeValue::setValue(QORString const& value) {
    struct Values {
        QORString& held;
        QORString other;
    } values{value_, value};
    auto const exchange = [](void* context) {
        auto& both = *static_cast<Values*>(context);
        std::swap(both.held, both.other);
    };
    if (!derivedType_)
        return exchange(&values);
    QORLinkEnd const& end = QORRecipe::ownEnd(QORElementType::TYPE_VALUE, QORElementType::DERIVED_TYPE);
    if (!QORRecipe::rekey(*this, end, exchange, &values))
        QORRecipe::refuse(end);
}
