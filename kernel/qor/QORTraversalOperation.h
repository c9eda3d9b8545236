#pragma once

#include <qor/QORExport.h>

class QORObject;

/// What `QORObject::depthTraversal` calls on each object.
class QOR_API QORTraversalOperation {
public:
    /// Called before the object's children. May replace `data` for this subtree. False cuts the subtree off,
    /// this object's own `post_process` included.
    virtual bool pre_process(QORObject* object, void*& data);
    /// Called after the object's children, with the data of its `pre_process`. May delete the object.
    virtual void post_process(QORObject* object, void* data);
    virtual ~QORTraversalOperation() = default;
};
