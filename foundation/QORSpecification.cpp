#include <qor/QORSpecification.h>

char const* VRNproductWeb = "https://qor-repository.example";
char const* VRNproductCompany = "QOR Repository developers";
char const* VRNproductName = "QOR Repository";
char const* VRNproductVersion = "5.2.0 - Jun 12 2007 10:35:49";

namespace {

void write(char const** target, char const* value) {
    if (target != nullptr) {
        *target = value;
    }
}

} // namespace

void QORSpecification(char const** web, char const** company, char const** name, char const** version) {
    write(web, VRNproductWeb);
    write(company, VRNproductCompany);
    write(name, VRNproductName);
    write(version, VRNproductVersion);
}
