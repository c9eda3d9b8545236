#include <qor/QORPropertyType.h>

QORString QORPropertyType::getFullName() const {
    if (getUsage() == "USER")
        return getGroup().length ? getName() + "(" + getGroup() + ")" : getName();
    return getUsage().length ? getUsage() + "." + getName() : getName();
}

QORString QORPropertyType::getDisplayName() const {
    return getFullName();
}
