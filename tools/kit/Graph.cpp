#include "kit/Graph.h"

#include <qor/QORObject.h>
#include <qor/QORTraversalOperation.h>

#include <memory>
#include <unordered_set>

namespace kit {
namespace {

class Collecting : public QORTraversalOperation {
public:
    bool pre_process(QORObject* object, void*&) override {
        if (!met.insert(object).second) {
            return false;
        }
        objects.push_back(object);
        return true;
    }

    std::vector<QORObject*> objects;

private:
    std::unordered_set<QORObject const*> met;
};

} // namespace

// Unlinked first, so that no object takes another one with it: owners can form a ring.
Graph::~Graph() {
    for (QORObject* object : all) {
        object->isolate(false);
    }
    for (QORObject* object : all) {
        delete object;
    }
}

void Graph::adoptTree(QORObject* root) {
    std::unique_ptr<QORObject> safe(root);
    Collecting collecting;
    root->depthTraversal(collecting, nullptr);
    all.insert(all.end(), collecting.objects.begin(), collecting.objects.end());
    safe.release();
}

void Graph::adopt(QORObject* object) {
    std::unique_ptr<QORObject> safe(object);
    all.push_back(object);
    safe.release();
}

} // namespace kit
