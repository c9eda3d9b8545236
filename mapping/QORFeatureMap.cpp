#include <qor/QORFeatureMap.h>

#include <qor/QORFeature.h>

QORString QORFeatureMap::getDisplayName() const {
    QORFeature const* const first = getDestinationFeature(0);
    return first ? first->getName() : getName();
}
