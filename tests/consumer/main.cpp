#include <cstdio>
#include <qor/QOR.h>

int main() {
    QORModel* model = new QORModel;
    model->setName("Shop");
    QORDesignPackage* package = new QORDesignPackage;
    package->setName("Sales");
    model->addChildPackage(package);
    QORClass* customer = new QORClass;
    customer->setName("Customer");
    package->addModelElement(customer);
    QORAttribute* city = new QORAttribute;
    city->setName("city");
    customer->addFeature(city);

    QORObject const* const objects[] = {model, package, customer, city};
    for (QORObject const* object : objects) {
        std::printf("%s %s\n", object->getMetaClass()->getDisplayName().chars, object->getName().chars);
    }
    delete model;
}
