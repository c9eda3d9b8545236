// Lets a program take all its memory from operator new, so that what the C library fills memory with reaches
// objects.

#include <qor/QORPool.h>

namespace {

[[maybe_unused]] bool const bypassed = (QORPool::bypass(true), true);

} // namespace
