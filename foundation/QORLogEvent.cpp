#include <qor/QORLogEvent.h>

QORLogEvent::QORLogEvent(QORString const& eventText, QORString const& eventCode, int eventSeverity,
                         QORString const& eventDetail)
    : text(eventText), code(eventCode), severity(eventSeverity), detail(eventDetail) {}
