/// Names, keyed values and marks that hosts put on objects.
#pragma once

#include "model/ObjectPropertiesAttribute.h"
#include "model/StringAttribute.h"

namespace QRV
{
/// Null without.
ObjectPropertiesAttribute* FindObjectProperties(const Object& object);
void SetObjectProperties(Object& object, const std::string& sName, bool bReportArea);

/// An attribute that all the objects carry, or none does. Null with `nBadInput` for an empty key, a copy behaviour that
/// there is none of, and an object that carries one of this key already.
StringAttribute* CreateStringAttribute(History& history, const std::string& sKey, const std::string& sValue,
                                       const std::vector<Object*>& aObjects, nCopyBehavior nCopy, bool bSplit,
                                       Result& result);
/// Appends those of the key that the object carries.
void GetStringAttributes(const Object& object, const std::string& sKey, std::vector<StringAttribute*>& aAttributes);
/// Appends all of the key, those included that nothing carries.
void GetStringAttributes(const History& history, const std::string& sKey, std::vector<StringAttribute*>& aAttributes);

/// Marks edges and vertices; passes over what is neither.
void MarkSmooth(const std::vector<Object*>& aObjects, bool bSmooth);
} // namespace QRV
