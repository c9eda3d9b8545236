#include <qor/QORSQLViewAttribute.h>

#include <qor/QORSQLViewEntity.h>

// The classifier's own class isn't looked at, so the cast is unchecked.
QORSQLViewEntity* QORSQLViewAttribute::getSQLViewEntity() const {
    return reinterpret_cast<QORSQLViewEntity*>(getClassifier());
}

bool QORSQLViewAttribute::addSQLViewEntity(QORSQLViewEntity* owner) {
    return addClassifier(owner);
}

bool QORSQLViewAttribute::removeSQLViewEntity() {
    return removeClassifier();
}

bool QORSQLViewAttribute::removeSQLViewEntity(QORSQLViewEntity* owner) {
    return removeClassifier(owner);
}
