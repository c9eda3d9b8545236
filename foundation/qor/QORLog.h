#pragma once

#include <qor/QORExport.h>
#include <qor/QORLogEvent.h>

/// Where messages go. A caller derives from it and decides what becomes of an event.
class QOR_API QORLog {
public:
    virtual ~QORLog();

    /// Receives one event, which lives for the call only.
    virtual void log(QORLogEvent const& event) = 0;
};
