#include <qor/QORBusinessRule.h>

#include "QORTypeValueCopies.h"

QORBusinessRule::QORBusinessRule(QORBusinessRule const& other)
    : QORModelObject(other), type_(other.type_), value_(other.value_), lowerBound_(other.lowerBound_),
      upperBound_(other.upperBound_) {
    elementType = QORElementType::BUSINESS_RULE;
    try {
        qorCopyTypeValues(other, *this);
    } catch (...) {
        removeTypeValues();
        throw;
    }
}

QORBusinessRule& QORBusinessRule::operator=(QORBusinessRule const& other) {
    if (this == &other)
        return *this;
    QORModelObject::operator=(other);
    type_ = other.type_;
    value_ = other.value_;
    lowerBound_ = other.lowerBound_;
    upperBound_ = other.upperBound_;
    removeTypeValues();
    qorCopyTypeValues(other, *this);
    return *this;
}
