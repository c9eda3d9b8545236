#pragma once

#include <qor/QORTraversalOperation.h>

/// Deletes each object of a walk, children first, except the one passed as `data`, usually the root.
class QOR_API QORTraversalDelete : public QORTraversalOperation {
public:
    void post_process(QORObject* object, void* data) override;
};
