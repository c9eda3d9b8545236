#pragma once

#include <qor/QORElementType.h>
#include <qor/QORExport.h>

class QORObject;

/// Returns a new object of the class with an element type, made by its default constructor; the caller owns
/// it. An abstract class and OBJECT return null. A retired number, or one that is no element type, ends the
/// process with an assertion.
QOR_API QORObject* createQORObject(QORElementType elementType);
