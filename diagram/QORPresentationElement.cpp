#include <qor/QORPresentationElement.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORDiagram.h>
#include <qor/QORModelObject.h>

QORString QORPresentationElement::getDisplayName() const {
    QORString const text = qorNameOf(getDiagram()) + "_";
    QORModelObject const* const subject = getSubjectModelObject();
    return subject ? text + qorLabelOf(*subject) : text;
}
