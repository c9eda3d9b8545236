#include <qor/QORBusinessRule.h>

#include "QORTypeValueCopies.h"

QORBusinessRule::QORBusinessRule(QORBusinessRule const& other)
    : QORModelObject(other), type_(other.type_), value_(other.value_), lowerBound_(other.lowerBound_),
      upperBound_(other.upperBound_) {
    elementType = QORElementType::BUSINESS_RULE;
    QORTypeValueCopies(other).giveTo(*this, QORElementType::BUSINESS_RULE);
}

QORBusinessRule& QORBusinessRule::operator=(QORBusinessRule const& other) {
    if (this == &other)
        return *this;
    QORRecipe::reserveTexts(*this, other, QORMetamodel::description(QORElementType::BUSINESS_RULE));
    QORTypeValueCopies copies(other);
    QORModelObject::operator=(other);
    type_ = other.type_;
    value_ = other.value_;
    lowerBound_ = other.lowerBound_;
    upperBound_ = other.upperBound_;
    copies.replaceThoseOf(*this, QORElementType::BUSINESS_RULE);
    return *this;
}
