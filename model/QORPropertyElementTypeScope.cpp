#include <qor/QORPropertyElementTypeScope.h>

#include <new>
#include <utility>

/// The field keeps the new scope also where the owner refuses the name that goes with it.
void QORPropertyElementTypeScope::setScope(QORElementType value) {
    QORString const text(getElementTypeName(value));
    QORElementType const before = scope_;
    scope_ = value;
    try {
        setName(text);
    } catch (std::bad_alloc const&) {
        scope_ = before;
        throw;
    }
}

QORPropertyElementTypeScope&
QORPropertyElementTypeScope::operator=(QORPropertyElementTypeScope const& other) {
    if (this == &other)
        return *this;
    QORString const text(getElementTypeName(other.scope_));
    QORString nameBefore(name);
    QORElementType const scopeBefore = scope_;
    bool const marksBefore[] = {flag1, flag2, flag3};
    void* const pointerBefore = generalPointer;
    QORObject::operator=(other);
    scope_ = other.scope_;
    try {
        setName(text);
    } catch (std::bad_alloc const&) { // where the owner refuses the name, the rest stays assigned
        name = std::move(nameBefore);
        scope_ = scopeBefore;
        flag1 = marksBefore[0];
        flag2 = marksBefore[1];
        flag3 = marksBefore[2];
        generalPointer = pointerBefore;
        throw;
    }
    return *this;
}
