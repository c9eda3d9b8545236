// Prints what one object of each class takes: the class, its bytes, its texts, its link ends, and whether it
// is abstract. `docs/memory.md` is made from this by sizes.sh.

#include <qor/QOR.h>

#include <cstddef>
#include <cstdio>

namespace {

struct ClassSize {
    char const* name;
    std::size_t bytes;
    QORMetaClass* (*metaClass)();
};

ClassSize const classSizes[] = {
#define QOR_CLASS(name) {#name, sizeof(name), &name::getStaticMetaClass},
#include "QORClassList.inc"
#undef QOR_CLASS
};

struct PartSize {
    char const* name;
    std::size_t bytes;
};

PartSize const partSizes[] = {
    {"QORString", sizeof(QORString)},         {"QORDate", sizeof(QORDate)},
    {"QORObject", sizeof(QORObject)},         {"QORLinkTree", sizeof(QORLinkTree)},
    {"QORRBTreeNode", sizeof(QORRBTreeNode)}, {"QORVector", sizeof(QORVector)},
    {"QORHashtable", sizeof(QORHashtable)},
};

int countTexts(QORMetaClass const& metaClass) {
    QORVector const& attributes = metaClass.getMetaAttributes();
    int texts = 0;
    for (int position = 0; position < attributes.size; ++position)
        texts += static_cast<QORMetaAttribute const*>(attributes[position])->getType() ==
                 QORMetaAttributeType::STRING;
    return texts;
}

int countNaryEnds(QORMetaClass const& metaClass) {
    QORVector const& links = metaClass.getMetaLinks();
    int ends = 0;
    for (int position = 0; position < links.size; ++position)
        ends += !static_cast<QORMetaLink const*>(links[position])->isUnary();
    return ends;
}

void print(ClassSize const& row) {
    QORMetaClass const& metaClass = *row.metaClass();
    int const nary = countNaryEnds(metaClass);
    std::printf("class %s %zu %d %d %d %s\n", row.name, row.bytes, countTexts(metaClass),
                metaClass.getMetaLinks().size - nary, nary, metaClass.isAbstract() ? "abstract" : "-");
}

} // namespace

int main() {
    for (PartSize const& part : partSizes)
        std::printf("part %s %zu\n", part.name, part.bytes);
    for (ClassSize const& row : classSizes)
        print(row);
}
