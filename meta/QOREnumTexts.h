#pragma once

#include <qor/QORMetaWrappers.h>

/// The texts of one enumeration, as the generator knows them.
struct QOREnumTexts {
    QORGetEnumNameByIDWrapper names; ///< what the records of attributes read the texts by
    char const* const* texts;        ///< by number, closed by a null pointer

    /// Those of all enumerations; the last entry has no texts.
    static QOREnumTexts const all[];
};
