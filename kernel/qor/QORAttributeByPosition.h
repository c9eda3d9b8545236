#pragma once

#include <qor/QORFeatureByPosition.h>

/// Features, seen as the attributes of a class, by position.
using QORAttributeByPosition = QORFeatureByPosition;
