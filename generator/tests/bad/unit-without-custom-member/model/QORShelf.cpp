#include <qor/QORShelf.h>
