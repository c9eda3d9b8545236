#pragma once

#include <qor/QORContainer.h>
#include <qor/QORString.h>

class QORObject;

/// The pieces that computed display names are made of.

/// The object's name, or an empty text for null.
QORString qorNameOf(QORObject const* object);
/// The object's name or, if that is empty, its display name.
QORString qorLabelOf(QORObject const& object);
/// Both names with `between` standing between them, whichever of the two is missing.
QORString qorJoinNames(QORObject const* first, char const* between, QORObject const* second);
/// The owner's name and "_" if there is an owner, then the member's name if there is one.
QORString qorNameInOwner(QORObject const* owner, QORObject const* member);
/// The names of all elements of a container in its order, with "_" between them.
QORString qorJoinAll(QORContainer const& objects);
