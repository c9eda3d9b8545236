// Objects for gdb to show; run.sh stops in `stop`.
#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORDesignPackage.h>
#include <qor/QORGeneralization.h>
#include <qor/QORGrouping.h>
#include <qor/QORModel.h>

#include <string>

namespace {

/// A caller's class, with fields of its own.
class Table : public QORClass {
public:
    int rows = 0;
    QORString note{"of the caller"};
};

template <class Object>
Object* named(std::string const& name) {
    auto* const object = new Object;
    object->setName(name.c_str());
    return object;
}

/// A vector with a gap: its elements don't lie side by side.
void addGroupings(QORAttribute& attribute) {
    for (int i = 0; i < 100; ++i)
        attribute.addGrouping(named<QORGrouping>("g" + std::to_string(i)));
    for (int i = 97; i > 0; --i)
        attribute.removeGrouping(i);
}

} // namespace

[[gnu::noinline]] void stop(QORModelElement* object, QORAttribute* column, QORModelObject const* package,
                            QORObject* table, QORObject* model, QORClass* dead) {
    asm volatile("" ::"r"(object), "r"(column), "r"(package), "r"(table), "r"(model), "r"(dead));
}

int main() {
    auto* const package = named<QORDesignPackage>("shop");
    auto* const customer = named<QORClass>("a \"customer\"\nor \\ not");
    package->addModelElement(customer);
    customer->setID(7);
    customer->setPhysicalName("CUSTOMER");
    for (char const* name : {"zip", "id", "name", "email", "phone", "town"})
        customer->addFeature(named<QORAttribute>(name));
    auto* const subtype = new QORGeneralization;
    customer->addSupertypeOfGeneralization(subtype);

    auto* const column = static_cast<QORAttribute*>(customer->getFeature(0));
    column->setName(std::string(70, 'e').c_str());
    column->setPosition(3);
    column->setOptional(true);
    addGroupings(*column);

    Table table;
    table.setName("orders");
    QORModel model;
    QORDate date;
    date.setDate(QORString("12:34:56 2001-02-03"));
    model.setCreationTime(date);
    alignas(QORClass) static char zeros[sizeof(QORClass)];
    stop(customer, column, package, &table, &model, reinterpret_cast<QORClass*>(zeros));
}
