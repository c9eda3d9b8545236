#pragma once

#include <unordered_set>

class QORObject;

/// The memory that a thread has taken from the pool and not given back, and so which of its objects live,
/// whoever has made and deleted them. From its making to its end it watches the thread that made it; one at a
/// time does.
class LiveObjects {
public:
    LiveObjects();
    LiveObjects(LiveObjects const&) = delete;
    LiveObjects& operator=(LiveObjects const&) = delete;
    ~LiveObjects();

    bool contains(QORObject const* object) const { return blocks.count(object) != 0; }

    /// What the pool tells.
    void add(void const* block) { blocks.insert(block); }
    void forget(void const* block) { blocks.erase(block); }

private:
    std::unordered_set<void const*> blocks;
};
