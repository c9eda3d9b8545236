#include "QORClassRecords.h"

#include "kernel/QORRecipe.h"

namespace {

QORLinkEnd const& asEnd(void const* end) {
    return *static_cast<QORLinkEnd const*>(end);
}

QORObject* farOfEnd(QORObject const* object, void const* end, int) {
    return QORRecipe::far(*object, asEnd(end));
}

QORObject* elementOfEnd(QORObject const* object, void const* end, int index) {
    return QORRecipe::at(*object, asEnd(end), index);
}

int countOfEnd(QORObject const* object, void const* end) {
    return QORRecipe::count(*object, asEnd(end));
}

} // namespace

QORClassRecords::QORClassRecords(QORClassDescription const& description, QORMetaClass* parent, bool abstract,
                                 QOREntries<QORAttributeEntry> attributes, QOREntries<QORLinkEntry> links)
    : record(parent, description.elementType, description.displayName, abstract) {
    record.description = &description;
    for (QORAttributeEntry const& entry : attributes)
        attributeRecords.emplace_back(&record, entry.id, entry.displayName, entry.type, entry.defaultValue,
                                      entry.get, entry.set, entry.idByName, entry.nameById);
    for (QORLinkEntry const& entry : links) {
        QORLinkEnd const& end = QORMetamodel::ends[entry.id];
        bool const unary = end.shape == QOREndShape::UNARY;
        linkRecords.emplace_back(
            &record, entry.id, entry.roleName, unary, static_cast<QORMetaLinkType>(end.type),
            QORGetLinkWrapper(unary ? farOfEnd : elementOfEnd, &end),
            unary ? QORGetLinkCountWrapper() : QORGetLinkCountWrapper(countOfEnd, &end), entry.add);
    }
}
