#include "model/ObjectPairing.h"

#include "history/HistoryRegistry.h"
#include "model/Attribute.h"

#include <algorithm>

namespace QRV
{
bool ObjectPairing::SetPairs(const std::vector<Object*>& aFirst, const std::vector<Object*>& aSecond)
{
    if (aFirst.size() != aSecond.size())
        return false;
    for (std::size_t i = 0; i < aFirst.size(); ++i)
        if (!Pair(aFirst[i], aSecond[i]))
            return false;
    return true;
}

bool ObjectPairing::Pair(const Object* pA, const Object* pB)
{
    if (!pA || !pB || pA == pB)
        return pA == pB;
    const auto itForward = m_mapForward.emplace(pA, pB).first;
    const auto itBackward = m_mapBackward.emplace(pB, pA).first;
    return itForward->second == pB && itBackward->second == pA;
}

bool ObjectPairing::PairHistories(std::uint64_t nA, std::uint64_t nB)
{
    if (nA == nB)
        return true;
    if (const auto it = m_mapHistories.find(nA); it != m_mapHistories.end())
        return it->second == nB;
    if (!m_aPairedHistories.insert(nB).second)
        return false;
    m_mapHistories.emplace(nA, nB);
    m_aHistoriesToMatch.emplace_back(nA, nB);
    return true;
}

bool ObjectPairing::Match(const Object& a, const Object& b)
{
    if (&a == &b)
        return true;
    if (a.GetType() != b.GetType() || !a.IsEquivalent(b, *this) ||
        !PairHistories(a.GetReferencedHistoryID(), b.GetReferencedHistoryID()))
        return false;
    std::vector<Attribute*> aFirst;
    std::vector<Attribute*> aSecond;
    a.GetAttributes(aFirst);
    b.GetAttributes(aSecond);
    return std::equal(aFirst.begin(), aFirst.end(), aSecond.begin(), aSecond.end(),
                      [&](const Attribute* pA, const Attribute* pB) { return Pair(pA, pB); });
}

bool ObjectPairing::MatchHistories()
{
    const HistoryRegistry& registry = HistoryRegistry::Get();
    while (!m_aHistoriesToMatch.empty())
    {
        const auto [nA, nB] = m_aHistoriesToMatch.back();
        m_aHistoriesToMatch.pop_back();
        const History* pA = registry.GetHistory(nA);
        const History* pB = registry.GetHistory(nB);
        if (!pA != !pB || (pA && !MatchLiveObjects(*pA, *pB)))
            return false;
    }
    return true;
}

bool ObjectPairing::MatchLiveObjects(const History& a, const History& b)
{
    std::vector<Object*> aFirst;
    std::vector<Object*> aSecond;
    const std::size_t nIDs = std::max(a.GetObjectTable().Size(), b.GetObjectTable().Size());
    for (std::uint64_t nID = 0; nID < nIDs; ++nID)
    {
        Object* pA = a.GetObject(nID);
        Object* pB = b.GetObject(nID);
        if (!pA != !pB)
            return false;
        if (!pA)
            continue;
        aFirst.push_back(pA);
        aSecond.push_back(pB);
    }
    if (!SetPairs(aFirst, aSecond))
        return false;
    for (std::size_t i = 0; i < aFirst.size(); ++i)
        if (!Match(*aFirst[i], *aSecond[i]))
            return false;
    return true;
}

bool Object::IsEquivalentWithChildren(const Object& other, bool /*bStrict*/) const
{
    if (this == &other)
        return true;
    std::vector<Object*> aMine{const_cast<Object*>(this)};
    std::vector<Object*> aOthers{const_cast<Object*>(&other)};
    GetAllChildren(aMine, false);
    other.GetAllChildren(aOthers, false);
    ObjectPairing pairing;
    if (!pairing.SetPairs(aMine, aOthers))
        return false;
    for (std::size_t i = 0; i < aMine.size(); ++i)
        if (!pairing.Match(*aMine[i], *aOthers[i]))
            return false;
    return pairing.MatchHistories();
}
} // namespace QRV
