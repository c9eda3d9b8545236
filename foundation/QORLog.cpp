#include <qor/QORLog.h>

QORLog::~QORLog() = default;
