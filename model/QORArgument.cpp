#include <qor/QORArgument.h>

QORString QORArgument::getDisplayName() const {
    return QORString("arg") + QORString(static_cast<int>(getPosition()));
}
