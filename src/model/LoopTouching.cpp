#include "model/LoopTouching.h"

#include "model/Loop.h"
#include "model/Vertex.h"

#include <algorithm>

namespace QRV
{
namespace
{
/// Goes along the sides of a loop and of the loops that touch it, and of those that touch these.
class TouchingLoops
{
public:
    explicit TouchingLoops(Loop& first) : m_aReached{{0, {&first, nullptr}}}, m_seen{&first}, m_pAt(first.GetCoedge())
    {
    }

    bool HasReached(const Loop& loop) const { return m_seen.contains(&loop); }

    /// Looks round one vertex. False when none is left.
    bool Step()
    {
        if (!m_pAt)
            return false;
        LookRound(*m_pAt->GetStartVertex());
        m_pAt = m_pAt->GetNext();
        if (m_pAt == GetLoop().GetCoedge())
            m_pAt = ++m_nLoop < m_aReached.size() ? GetLoop().GetCoedge() : nullptr;
        return true;
    }

    /// From the first loop to one that has been reached.
    std::vector<LoopTouch> GetWayTo(const Loop& loop) const
    {
        const auto itLoop = std::find_if(m_aReached.begin(), m_aReached.end(),
                                         [&](const Reached& reached) { return reached.touch.pNext == &loop; });
        std::vector<LoopTouch> aWay;
        for (auto n = std::size_t(itLoop - m_aReached.begin()); n > 0; n = m_aReached[n].nBefore)
            aWay.push_back(m_aReached[n].touch);
        std::reverse(aWay.begin(), aWay.end());
        return aWay;
    }

private:
    struct Reached
    {
        std::size_t nBefore;
        LoopTouch touch;
    };

    const Loop& GetLoop() const { return *m_aReached[m_nLoop].touch.pNext; }

    void LookRound(Vertex& vertex)
    {
        constexpr std::uint64_t kFewestEdges = 3; // two sides of one loop and a spur
        if (vertex.GetUse() < kFewestEdges)
            return;
        m_aCoedges.clear();
        vertex.GetCoedges(m_aCoedges, GetLoop().GetFace());
        for (const Coedge* pCoedge : m_aCoedges)
            if (m_seen.insert(pCoedge->GetLoop()).second)
                m_aReached.push_back({m_nLoop, {pCoedge->GetLoop(), &vertex}});
    }

    std::vector<Reached> m_aReached;
    ObjectSet m_seen;
    std::size_t m_nLoop = 0; ///< along which it goes, of those reached
    const Coedge* m_pAt;
    ShortList<Coedge*> m_aCoedges;
};

/// The way that leads from `last` to another loop, gone back.
std::vector<LoopTouch> Turn(const std::vector<LoopTouch>& aWay, Loop& last)
{
    std::vector<LoopTouch> aBack;
    for (std::size_t n = aWay.size(); n > 0; --n)
        aBack.push_back({n > 1 ? aWay[n - 2].pNext : &last, aWay[n - 1].pVertex});
    return aBack;
}
} // namespace

std::vector<LoopTouch> FindTouchingLoops(Loop& first, Loop& last)
{
    TouchingLoops fromFirst(first);
    TouchingLoops fromLast(last);
    while (fromFirst.Step())
    {
        if (fromFirst.HasReached(last))
            return fromFirst.GetWayTo(last);
        if (!fromLast.Step())
            break;
        if (fromLast.HasReached(first))
            return Turn(fromLast.GetWayTo(first), last);
    }
    return {};
}
} // namespace QRV
