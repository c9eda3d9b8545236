#pragma once

#include <qor/QORTraversalOperation.h>

/// Sets the `generalPointer` of each object of a walk.
class QOR_API QORSetGeneralPointerOperation : public QORTraversalOperation {
public:
    /// The operation sets `value` everywhere.
    explicit QORSetGeneralPointerOperation(void* value) : pointer(value) {}
    void post_process(QORObject* object, void* data) override;

private:
    void* pointer;
};
