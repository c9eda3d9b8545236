#include <qor/QORTypeValue.h>

#include "kernel/QORRecipe.h"

#include <qor/QORDerivedType.h>

QORString QORTypeValue::getDisplayName() const {
    return getName().length ? getName() : getValue();
}

namespace {

/// A text that is about to change places with that of a type value.
struct Exchange {
    QORString& held;
    QORString other;

    static void run(void* exchange) {
        auto& both = *static_cast<Exchange*>(exchange);
        both.held.swap(both.other);
    }
};

/// A derived type sorts unnamed values by their value, so a value under one is taken out and put back. A
/// business rule doesn't see the change: its values keep their places.
void exchangeValue(QORTypeValue& value, Exchange& exchange) {
    if (!value.getDerivedType())
        return Exchange::run(&exchange);
    QORLinkEnd const& end = QORRecipe::ownEnd(QORElementType::TYPE_VALUE, QORElementType::DERIVED_TYPE);
    if (!QORRecipe::rekey(value, end, Exchange::run, &exchange))
        QORRecipe::refuse(end);
}

} // namespace

QORTypeValue& QORTypeValue::operator=(QORTypeValue const& other) {
    if (this == &other)
        return *this;
    Exchange exchange{value_, other.value_};
    QORRecipe::reserveTexts(*this, other, QORMetamodel::description(QORElementType::MODEL_OBJECT));
    QORModelObject::operator=(other);
    position_ = other.position_;
    exchangeValue(*this, exchange);
    return *this;
}

void QORTypeValue::setValue(QORString const& value) {
    Exchange exchange{value_, value};
    exchangeValue(*this, exchange);
}
