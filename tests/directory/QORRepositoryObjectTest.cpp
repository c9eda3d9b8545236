#include "GraphObservers.h"

#include <qor/QORFileFormat.h>
#include <qor/QORMetaAttribute.h>
#include <qor/QORProduct.h>
#include <qor/QORRepositoryObject.h>

using namespace graph;

namespace {

constexpr char const* created = "12:34:56 2001-02-03";
constexpr char const* modified = "01:02:03 2004-05-06";

QORDate date(char const* text) {
    QORDate result;
    result.setDate(QORString(text));
    return result;
}

} // namespace

TEST(QORRepositoryObject, IsAnAbstractElement) {
    expectAbstract<QORRepositoryObject>(QORElementType::REPOSITORY_OBJECT, 58, "RepositoryObject",
                                        QORElement::getStaticMetaClass());
}

TEST(QORRepositoryObject, StartsWithoutDatesAndNames) {
    Plain<QORRepositoryObject> object;
    EXPECT_STREQ(object.getCreationTime().chars(), "00:00:00 ");
    EXPECT_STREQ(object.getLastModificationTime().chars(), "00:00:00 ");
    EXPECT_STREQ(object.getAuthor().chars, "");
    EXPECT_STREQ(object.getModifier().chars, "");
    QORMetaClass const* const metaClass = QORRepositoryObject::getStaticMetaClass();
    EXPECT_STREQ(metaClass->getMetaAttributeByDisplayName("creationTime")->getDefaultValue().chars,
                 "00:00:00 ");
    EXPECT_STREQ(metaClass->getMetaAttributeByDisplayName("lastModificationTime")->getDefaultValue().chars,
                 "00:00:00 ");
}

TEST(QORRepositoryObject, CopyConstructorTakesBothDates) {
    QORProduct source;
    source.setCreationTime(date(created));
    source.setLastModificationTime(date(modified));
    source.setAuthor("a");
    source.setModifier("m");
    QORProduct const copy(source);
    EXPECT_STREQ(copy.getCreationTime().chars(), created);
    EXPECT_STREQ(copy.getLastModificationTime().chars(), modified);
    EXPECT_STREQ(copy.getAuthor().chars, "a");
    EXPECT_STREQ(copy.getModifier().chars, "m");
    QORFileFormat file;
    file.setCreationTime(date(created));
    EXPECT_STREQ(QORFileFormat(file).getCreationTime().chars(), created);
}

TEST(QORRepositoryObject, AssignmentLeavesBothDates) {
    QORProduct source;
    source.setCreationTime(date(created));
    source.setLastModificationTime(date(modified));
    source.setAuthor("a");
    source.setModifier("m");
    QORProduct target;
    target.setCreationTime(date(modified));
    target.setLastModificationTime(date(created));
    target = source;
    EXPECT_STREQ(target.getCreationTime().chars(), modified);
    EXPECT_STREQ(target.getLastModificationTime().chars(), created);
    EXPECT_STREQ(target.getAuthor().chars, "a");
    EXPECT_STREQ(target.getModifier().chars, "m");
    QORProduct set;
    set.setFrom(source);
    EXPECT_STREQ(set.getCreationTime().chars(), "00:00:00 ");
    EXPECT_STREQ(set.getLastModificationTime().chars(), "00:00:00 ");
}

TEST(QORRepositoryObject, ComparesAuthorAndModifierButNoDate) {
    expectNotCompared<QORProduct>([](auto& product) { product.setCreationTime(date(created)); });
    expectNotCompared<QORProduct>([](auto& product) { product.setLastModificationTime(date(created)); });
    expectCompared<QORProduct>([](auto& product) { product.setAuthor("x"); });
    expectCompared<QORProduct>([](auto& product) { product.setModifier("x"); });
    expectCompared<QORProduct>([](auto& product) { product.setNativeType("x"); });
}

TEST(QORRepositoryObject, ReencodesAuthorAndModifierEachOnItsOwn) {
    Journal journal;
    Watched<QORRepositoryObject> object(journal, "object");
    object.QORRepositoryObject::setName(rawText);
    object.setAuthor(stubbornText);
    object.setModifier(rawText);
    object.setCreationTime(date(created));
    object.onSetName = [&] { EXPECT_STREQ(object.getModifier().chars, recodedText); };
    Recoding recode;
    recode(object);
    EXPECT_EQ(journal.namings, Labels{"object"});
    EXPECT_STREQ(object.getAuthor().chars, stubbornText);
    EXPECT_STREQ(object.getName().chars, recodedText);
    EXPECT_STREQ(object.getCreationTime().chars(), created);
    EXPECT_EQ(recode.first, 2);
    EXPECT_EQ(recode.errors, 1);
}

TEST(QORRepositoryObject, HasNoOwner) {
    Plain<QORRepositoryObject> object;
    EXPECT_EQ(object.getParent(), nullptr);
    EXPECT_EQ(object.getParentCount(), 0);
    EXPECT_TRUE(object.recursiveDelete());
}
