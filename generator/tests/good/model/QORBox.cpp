#include <qor/QORBox.h>

QORBox& QORBox::operator=(QORBox const& other) {
    QORThing::operator=(other);
    return *this;
}

QORString QORBox::getDisplayName() const {
    return getName();
}

void QORBox::setLabel(QORString const&) {
    throw 1;
}
