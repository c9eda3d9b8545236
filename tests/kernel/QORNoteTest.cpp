#include <qor/QORNote.h>

#include "Graph.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

TEST(QORNote, EqualsOnlyNotes) {
    QORNote note;
    QORObject object;
    EXPECT_FALSE(note.equals(object));
    EXPECT_TRUE(note.QORObject::finalEquals(object));
}
