#include <qor/QORTypeValue.h>

#include "kernel/QORRecipe.h"

#include <qor/QORDerivedType.h>
#include <qor/QORException.h>

#include <optional>

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

QORLinkEnd const& endOfType() {
    return QORRecipe::ownEnd(QORElementType::TYPE_VALUE, QORElementType::DERIVED_TYPE);
}

/// A derived type sorts unnamed values by their value, so a value under one is taken out and put back; false,
/// with the value as it was, if the type refuses it. A business rule doesn't see the change: its values keep
/// their places.
bool exchangeValue(QORTypeValue& value, Exchange& exchange) {
    if (value.getDerivedType())
        return QORRecipe::rekey(value, endOfType(), Exchange::run, &exchange);
    Exchange::run(&exchange);
    return true;
}

} // namespace

QORTypeValue& QORTypeValue::operator=(QORTypeValue const& other) {
    if (this == &other)
        return *this;
    Exchange exchange{value_, other.value_};
    std::optional<QORException> refusal; // made ahead, since nothing may need memory after the first change
    if (getDerivedType())
        refusal = QORRecipe::refusal(endOfType());
    QORModelObject::operator=(other);
    position_ = other.position_;
    if (!exchangeValue(*this, exchange))
        throw QORException(*refusal);
    return *this;
}

void QORTypeValue::setValue(QORString const& value) {
    Exchange exchange{value_, value};
    if (!exchangeValue(*this, exchange))
        throw QORRecipe::refusal(endOfType());
}
