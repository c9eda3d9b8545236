#include <qor/QORPropertyElementTypeScope.h>

namespace {

QORString textOf(QORElementType type) {
    return getElementTypeName(type);
}

} // namespace

/// The field keeps the new scope also where the owner refuses the name that goes with it.
void QORPropertyElementTypeScope::setScope(QORElementType value) {
    scope_ = value;
    setName(textOf(value));
}

QORPropertyElementTypeScope&
QORPropertyElementTypeScope::operator=(QORPropertyElementTypeScope const& other) {
    if (this == &other)
        return *this;
    QORObject::operator=(other);
    scope_ = other.scope_;
    setName(textOf(scope_));
    return *this;
}
