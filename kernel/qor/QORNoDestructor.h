#pragma once

/// A link container that is a field of an object and whose destructor never runs.
///
/// A destructor of the container would be a call for nothing, 21 of them for each attribute: when an object
/// dies, its containers have been emptied, and an empty link container holds no memory. The compiler runs no
/// destructor for a member of a union. The field has size, alignment and address of the container.
///
/// The field is used like a pointer: `field->size`, `*field`. It also converts to the container, and `&field`
/// is the container's address, as the primitives of QORObject take it.
template <class Container>
class QORNoDestructor {
public:
    /// An empty container.
    QORNoDestructor() : container() {
        static_assert(sizeof(QORNoDestructor) == sizeof(Container), "nothing is added to the container");
        static_assert(alignof(QORNoDestructor) == alignof(Container), "the container keeps its alignment");
    }
    QORNoDestructor(QORNoDestructor const&) = delete;
    QORNoDestructor& operator=(QORNoDestructor const&) = delete;
    /// Does nothing. Without it, the class would have no destructor, as the union has none.
    ~QORNoDestructor() {}

    Container& operator*() { return container; }
    Container const& operator*() const { return container; }
    Container* operator->() { return &container; }
    Container const* operator->() const { return &container; }
    Container* operator&() { return &container; }
    Container const* operator&() const { return &container; }
    operator Container&() { return container; }
    operator Container const&() const { return container; }

private:
    union {
        Container container;
    };
};
