#include <qor/QORSQLViewEntity.h>

#include <qor/QORSQLViewAttribute.h>

bool QORSQLViewEntity::addSQLViewAttribute(QORSQLViewAttribute* attribute) {
    return addFeature(attribute);
}

bool QORSQLViewEntity::removeSQLViewAttribute(int index) {
    return removeFeature(index);
}

bool QORSQLViewEntity::removeSQLViewAttribute(QORString const& wanted, int* cursor) {
    return removeFeature(wanted, cursor);
}

bool QORSQLViewEntity::removeSQLViewAttribute(QORSQLViewAttribute* attribute) {
    return removeFeature(attribute);
}

void QORSQLViewEntity::removeSQLViewAttributes() {
    removeFeatures();
}

void QORSQLViewEntity::getSQLViewAttributeByPosition(QORSQLViewAttributeByPosition& view) const {
    getFeatureByPosition(view);
}

int QORSQLViewEntity::getSQLViewAttributeCount() const {
    return getFeatureCount();
}

bool QORSQLViewEntity::containsSQLViewAttribute(QORSQLViewAttribute const* attribute) const {
    return attribute && feature_->contains(static_cast<QORObject const*>(attribute), nullptr);
}

// Every feature counts as a column here: the object's class isn't looked at, so the casts are unchecked.
QORSQLViewAttribute* QORSQLViewEntity::getSQLViewAttribute(int index) const {
    return reinterpret_cast<QORSQLViewAttribute*>(getFeature(index));
}

QORSQLViewAttribute* QORSQLViewEntity::getSQLViewAttribute(QORString const& wanted, int* cursor) const {
    if (cursor)
        return reinterpret_cast<QORSQLViewAttribute*>(_getn(&feature_, wanted, cursor));
    return static_cast<QORSQLViewAttribute*>(feature_->findFirst(&wanted, nullptr));
}
