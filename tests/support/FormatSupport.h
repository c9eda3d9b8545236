#pragma once

#include "Expectations.h"

#include <qor/QORFileFormat.h>
#include <qor/QORFormat.h>

/// Expects the integer 1 and nothing else to be thrown.
template <class Operation>
void expectThrowsOne(Operation const& operation) {
    try {
        operation();
        ADD_FAILURE() << "nothing was thrown";
    } catch (int thrown) {
        EXPECT_EQ(thrown, 1);
    }
}

/// Sets all texts but the format type; they differ from those of any other format.
inline void fillStrange(QORFormat& format) {
    format.setName("strange");
    format.setDescription("description");
    format.setNativeType("native type");
    format.setAuthor("author");
    format.setModifier("modifier");
}

inline void expectOverwritten(QORFormat const& format) {
    EXPECT_STREQ(format.getName().chars, "strange");
    EXPECT_STREQ(format.getDescription().chars, "description");
    EXPECT_STREQ(format.getNativeType().chars, "native type");
    EXPECT_STREQ(format.getNativeId().chars, "");
    EXPECT_STREQ(format.getAuthor().chars, "author");
    EXPECT_STREQ(format.getModifier().chars, "modifier");
}
