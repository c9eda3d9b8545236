#include "TypeEnds.h"

#include <qor/QORBaseType.h>

namespace {

/// A caller's type that answers with values of its own.
class Fixed : public QORBaseType {
public:
    QORString const& getDataType() const override {
        static QORString const fixed("SQL_INTEGER");
        return fixed;
    }
    int getLength() const override { return 42; }
    int getScale() const override { return 7; }
};

} // namespace

TEST(QORConcreteType, AssignmentReadsTheSourceThroughItsVirtualGetters) {
    Fixed const source;
    QORBaseType target;
    target = source;
    EXPECT_EQ(target.getDataType(), "SQL_INTEGER");
    EXPECT_EQ(target.getLength(), 42);
    EXPECT_EQ(target.getScale(), 7);
    QORBaseType other;
    other.setFrom(source);
    EXPECT_EQ(other.getDisplayName(), "SQL_INTEGER_42_7");
}

TEST(QORConcreteType, EqualityReadsThroughTheVirtualGetters) {
    Fixed const fixed;
    QORBaseType plain;
    EXPECT_FALSE(fixed.equals(plain));
    EXPECT_FALSE(plain.equals(fixed));
    plain.setDataType("SQL_INTEGER");
    plain.setLength(42);
    plain.setScale(7);
    EXPECT_TRUE(fixed.equals(plain));
    EXPECT_TRUE(plain.equals(fixed));
}

TEST(QORConcreteType, EqualityComparesShapeAndModelObject) {
    QORBaseType type;
    type.setDataType("SQL_CHAR");
    type.setLength(5);
    type.setScale(2);
    type.setStereotype("S");
    QORBaseType other(type);
    EXPECT_EQ(type, other);
    other.setDataType("SQL_CHA");
    EXPECT_NE(type, other);
    other = type;
    other.setLength(6);
    EXPECT_NE(type, other);
    other = type;
    other.setScale(3);
    EXPECT_NE(type, other);
    other = type;
    other.setStereotype("");
    EXPECT_NE(type, other);
    other = type;
    other.setComment("C");
    EXPECT_EQ(type, other);
}
