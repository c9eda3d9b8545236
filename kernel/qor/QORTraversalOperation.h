#pragma once

#include <qor/QORExport.h>

class QORObject;

/// What `QORObject::depthTraversal` calls on each object. What it may do to the objects under way, and what
/// renaming does to the walk: see @ref callbacks, in QORObject.h.
class QOR_API QORTraversalOperation {
public:
    /// Called before the object's children. May replace `data` for this subtree. False cuts the subtree off,
    /// this object's own `post_process` included; the object may then be deleted.
    virtual bool pre_process(QORObject* object, void*& data);
    /// Called after the object's children, with the data of its `pre_process`. May delete the object.
    virtual void post_process(QORObject* object, void* data);
    virtual ~QORTraversalOperation() = default;
};
