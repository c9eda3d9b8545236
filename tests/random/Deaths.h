#pragma once

#include <vector>

class QORObject;

/// Tells when objects die. With the pool bypassed, any object's memory coming back is seen, and overwritten
/// so that a pointer that has been left to it doesn't go unnoticed; otherwise only objects of a watched class
/// tell.
namespace deaths {

/// Every object's death is told from now on, or only that of watched ones.
void watchAll(bool all);
bool allAreWatched();
/// Starts to watch an object.
void watch(QORObject* object);
/// The watched objects that have died since the last call.
std::vector<QORObject*> take();

/// Lets the allocation after `spared` further ones fail: that one, or all from there on.
void failAfter(long spared, bool forGood);
void failNoMore();
/// The blocks of operator new that haven't come back.
long liveBlocks();

} // namespace deaths
