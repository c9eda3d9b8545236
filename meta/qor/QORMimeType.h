#pragma once

#include <qor/QORExport.h>

/// The MIME types of the file formats that a directory describes, closed by a null pointer.
extern QOR_API char const* const QorMimeTypes[8];

/// What each entry of QorMimeTypes is called, at the same place, closed by a null pointer.
extern QOR_API char const* const QorMimeTypeNames[8];

/// Returns the name of a MIME type, case included; an unknown text, or null, comes back as the same pointer.
QOR_API char const* getMimeTypeName(char const* mimeType);

/// Returns the MIME type with a name, case included; an unknown text, or null, comes back as the same
/// pointer.
QOR_API char const* getMimeTypeByName(char const* name);
