#pragma once

#include "GraphObservers.h"

#include <qor/QORFileFormat.h>
#include <qor/QORFormat.h>
#include <qor/QORMetaAttribute.h>

namespace graph {

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

/// A file format whose texts differ from those of any other format.
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

/// Expects what all metadata formats with a type fixed by their class do: start with it, and refuse any other
/// whichever way it comes.
template <class Format>
void expectFixedFormatType(char const* type, char const* name) {
    Format format;
    EXPECT_STREQ(format.getFormatType().chars, type);
    EXPECT_STREQ(format.getName().chars, name);
    EXPECT_EQ(format.getParent(), nullptr);

    format.setFormatType(type);
    EXPECT_STREQ(format.getFormatType().chars, type);
    std::string const longer = std::string(type) + "x";
    std::string const other = std::string(type).replace(0, 1, "A");
    for (char const* refused : {"", "application/x-tova", longer.c_str(), other.c_str()}) {
        SCOPED_TRACE(refused);
        expectThrowsOne([&] { format.setFormatType(refused); });
        expectThrowsOne([&] { static_cast<QORFormat&>(format).setFormatType(refused); });
        EXPECT_STREQ(format.getFormatType().chars, type);
    }

    QORMetaAttribute const* const attribute =
        format.getMetaClass()->getMetaAttributeByID(QORAttributeType::FORMAT__FORMAT_TYPE);
    EXPECT_STREQ(attribute->getValue(&format).chars, type);
    QORString text(type);
    attribute->setValue(&format, text);
    text = "text/plain";
    expectThrowsOne([&] { attribute->setValue(&format, text); });
    EXPECT_STREQ(attribute->getValue(&format).chars, type);
}

/// Expects a refused assignment to leave the format type and to have written what stands above it.
template <class Format>
void expectRefusedAssignment(char const* type) {
    QORFileFormat file;
    fillStrange(file);
    file.setFormatType("text/plain");

    Format assigned;
    assigned.setNativeId("id");
    expectThrowsOne([&] { static_cast<QORFormat&>(assigned) = file; });
    expectOverwritten(assigned);
    EXPECT_STREQ(assigned.getFormatType().chars, type);

    Format set;
    expectThrowsOne([&] { set.setFrom(file); });
    expectOverwritten(set);
    EXPECT_STREQ(set.getFormatType().chars, type);

    file.setFormatType(type);
    file.setName("of that type");
    set.setFrom(file);
    EXPECT_STREQ(set.getName().chars, "of that type");
    EXPECT_STREQ(set.getFormatType().chars, type);
    EXPECT_EQ(set.getElementType(), Format().getElementType());
}

/// Expects copies to take the texts and no link.
template <class Format>
void expectCopied(char const* type) {
    Format source;
    fillStrange(source);
    Format const copy(source);
    EXPECT_STREQ(copy.getName().chars, "strange");
    EXPECT_STREQ(copy.getFormatType().chars, type);
    EXPECT_TRUE(copy.equals(source));
    EXPECT_FALSE(copy.isReferenced());
    Format assigned;
    assigned.setFrom(source);
    EXPECT_TRUE(assigned.equals(source));
    expectCompared<Format>([](auto& format) { format.setName("x"); });
    expectCompared<Format>([](auto& format) { format.setAuthor("x"); });
    expectCompared<Format>([](auto& format) { format.setModifier("x"); });
    expectNotCompared<Format>([](auto& format) { format.setDescription("x"); });
}

} // namespace graph
