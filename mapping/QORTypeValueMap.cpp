#include <qor/QORTypeValueMap.h>

#include <qor/QORTypeValue.h>

QORString QORTypeValueMap::getDisplayName() const {
    QORString text;
    if (QORTypeValue const* const source = getSourceTypeValue())
        text = source->getDisplayName();
    text += "_to_";
    if (QORTypeValue const* const destination = getDestinationTypeValue())
        text += destination->getDisplayName();
    return text;
}
