/// Prints objects for people.
#pragma once

#include <ostream>

namespace QRV
{
class Object;

/// Prints an object with all that it reaches below: a head, a directory of the ids of each class, then the fields of
/// each object. The text is the same under every locale.
/// @param pTitle      the first line; none for null
/// @param bDerivable  also the fields that could be derived from others
/// @param stream      gets the classic locale for good
/// @param nIndent     blanks for each level
/// @return false when the stream fails
bool DebugDump(const Object& object, const char* pTitle, bool bDerivable, std::ostream& stream, unsigned nIndent);
} // namespace QRV
