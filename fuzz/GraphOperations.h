#pragma once

#include "Bytes.h"
#include "LiveObjects.h"

#include <qor/QORElementType.h>

#include <string>
#include <vector>

class QOREncodingConverter;
class QORMetaLink;
class QORObject;

/// A graph that bytes build, change and take apart: each operation is one byte, what it works on are the next
/// ones. Everything goes through reflection and the root class.
class GraphOperations {
public:
    GraphOperations() = default;
    GraphOperations(GraphOperations const&) = delete;
    GraphOperations& operator=(GraphOperations const&) = delete;
    /// Deletes all objects that are left.
    virtual ~GraphOperations();

    /// Runs the operations up to the end of the bytes.
    void run(Bytes& bytes);

    /// What `kit::verify` finds in any part of the graph.
    std::vector<std::string> faults();

    /// All objects with their attributes and links as text, the same wherever they lie in memory.
    std::string dump();

    /// The objects that live, in order of their making.
    std::vector<QORObject*> objects();

    /// Hands all objects over to the caller: these operations forget them.
    std::vector<QORObject*> release();

protected:
    /// The element types of which there are objects.
    static std::vector<QORElementType> const& concreteTypes();

    virtual void step(Bytes& bytes);
    QORObject* pick(Bytes& bytes);
    void link(Bytes& bytes);
    void take(QORObject* object);

    LiveObjects live;
    std::vector<QORObject*> made;

private:
    void create(Bytes& bytes);
    void copy(Bytes& bytes);
    void read(Bytes& bytes);
    void rename(Bytes& bytes);
    void set(Bytes& bytes);
    void assign(Bytes& bytes);
    void setFrom(QORObject& target, QORObject const& source);
    void transcode(Bytes& bytes);
};
