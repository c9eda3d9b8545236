#pragma once

#include <qor/QORFeatureByPosition.h>

/// Features, seen as the columns of a view, by position.
using QORSQLViewAttributeByPosition = QORFeatureByPosition;
