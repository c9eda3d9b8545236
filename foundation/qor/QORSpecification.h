#pragma once

#include <qor/QORExport.h>

/// Web address of the product.
extern QOR_API char const* VRNproductWeb;
/// Who makes the product.
extern QOR_API char const* VRNproductCompany;
/// Name of the product.
extern QOR_API char const* VRNproductName;
/// Version, date and time of the build: "5.2.0 - Jun 12 2007 10:35:49".
extern QOR_API char const* VRNproductVersion;

/// Writes the product's record into the variables that are given; each may be null.
QOR_API void QORSpecification(char const** web, char const** company, char const** name,
                              char const** version);
