#include <qor/QORClassifierMap.h>

#include <qor/QORClassifier.h>

QORString QORClassifierMap::getDisplayName() const {
    QORClassifier const* const first = getDestinationClassifier(0);
    return first ? first->getName() : getName();
}
