/// The exported operations on what hosts put on objects: names, keyed values and marks. What holds for all calls stands
/// in API.h.
#pragma once

#include <QRV/Export.h>
#include <QRV/Ids.h>
#include <QRV/ObjectTypes.h>
#include <QRV/Result.h>

#include <cstdint>
#include <string>
#include <vector>

namespace QRV
{
/// Gives an object a name, and says whether the host's reports count its area.
/// @param object  of any class but attributes
/// @param levels  if given, the object is on these levels and no others, as by `APISetObjectsLevels`
QRV_API Result APISetObjectProperties(std::uint64_t nHistoryID, std::uint64_t object, const std::string& name,
                                      bool reportArea, const std::vector<std::uint64_t>* levels = nullptr);

/// The name of an object and the mark for reports; empty and false for an object that was given none.
QRV_API Result APIGetObjectPropertiesReadOnly(std::uint64_t nHistoryID, std::uint64_t object, std::string& name,
                                              bool& reportArea);

/// Makes a value under a key that any number of objects share. It goes with the last object that carries it.
/// @param key      not empty
/// @param objects  of any class but attributes, none of which has a value under the key yet; may be empty
/// @param copy     what copies of these objects get
/// @param split    whether a part split off one of them gets it too
QRV_API Result APICreateStringAttribute(std::uint64_t nHistoryID, const std::string& key, const std::string& value,
                                        const std::vector<std::uint64_t>& objects, std::uint64_t& attribute,
                                        nCopyBehavior copy, bool split);

/// Changes the value for all objects that share it.
QRV_API Result APISetStringAttributeValue(std::uint64_t nHistoryID, std::uint64_t attribute, const std::string& value);

/// The key and value of a keyed value.
/// @param owners  appended to: the objects that share the value, ascending
QRV_API Result APIGetStringAttributeKeyValueReadOnly(std::uint64_t nHistoryID, std::uint64_t attribute,
                                                     std::string& key, std::string& value,
                                                     std::vector<std::uint64_t>& owners);

/// Appends the attributes of a key on an object; with `INVALID_ID` those of the whole History, by value.
QRV_API Result APIGetStringAttributesByKeyReadOnly(std::uint64_t nHistoryID, std::uint64_t object,
                                                   const std::string& key, std::vector<std::uint64_t>& attributes);

/// Marks edges and vertices as smooth, or not; other objects are passed over.
QRV_API Result APISetEdgesOrVerticesMarkedSmooth(std::uint64_t nHistoryID, const std::vector<std::uint64_t>& objects,
                                                 bool bSmooth);
} // namespace QRV
