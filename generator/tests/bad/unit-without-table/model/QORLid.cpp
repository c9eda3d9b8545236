#include <qor/QORLid.h>
