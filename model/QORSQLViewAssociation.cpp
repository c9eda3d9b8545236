#include <qor/QORSQLViewAssociation.h>

#include "kernel/QORDisplayName.h"

#include <qor/QORClassifier.h>
#include <qor/QORSQLViewEntity.h>

QORString QORSQLViewAssociation::getDisplayName() const {
    return qorJoinNames(getSourceClassifier(), "_", getDestinationSQLViewEntity());
}
