#include "exchange/PlacedObjects.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Whether something in the set stands above the object.
bool HasOwnerAmong(const Object& object, const ObjectSet& objects)
{
    std::vector<Object*> aAbove;
    object.GetObjectsOfType(aAbove, nUnspecifiedType, true);
    return std::ranges::any_of(aAbove,
                               [&](const Object* pAbove) { return pAbove != &object && objects.contains(pAbove); });
}

/// One placement: the objects that one History shows under one transform.
class Placement
{
public:
    Placement(const ObjectSet& excluded, const Transf3d& transform, const PlacedObjectVisitor& visit)
        : m_excluded(excluded), m_transform(transform), m_visit(visit)
    {
    }

    bool Visit(const std::vector<Object*>& aObjects) const
    {
        const ObjectSet listed(aObjects.begin(), aObjects.end());
        ObjectSet seen;
        for (Object* pObject : aObjects)
            if (seen.insert(pObject).second && !IsPartOfAny(*pObject, m_excluded) && !HasOwnerAmong(*pObject, listed) &&
                !m_visit(*pObject, m_transform))
                return false;
        return true;
    }

private:
    const ObjectSet& m_excluded;
    const Transf3d& m_transform;
    const PlacedObjectVisitor& m_visit;
};
} // namespace

bool IsPartOfAny(const Object& object, const ObjectSet& objects)
{
    return !objects.empty() && (objects.contains(&object) || HasOwnerAmong(object, objects));
}

bool WalkPlacedObjects(const std::vector<Object*>& aObjects, const ObjectSet& excluded, const Transf3d& transform,
                       const PlacedObjectVisitor& visit)
{
    return Placement(excluded, transform, visit).Visit(aObjects);
}
} // namespace QRV
