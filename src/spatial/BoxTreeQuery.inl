/// The searches of a BoxTree.
#pragma once

#include <bit>

namespace QRV
{
/// A bit for each entry whose box passes.
template <class T, class BoxTest>
std::uint32_t GetPassing(const BoxTreeNode<T>& node, const BoxTest& test)
{
    std::uint32_t nPassing = 0;
    for (std::uint32_t n = 0; n < node.m_nCount; ++n)
        nPassing |= static_cast<std::uint32_t>(test(node.m_aBoxes[n])) << n;
    return nPassing;
}

template <class T>
template <class NodeTest, class LeafVisitor>
void BoxTree<T>::VisitLeaves(const NodeTest& nodeTest, LeafVisitor&& visit) const
{
    struct Step
    {
        const Interior* pNode;
        std::uint32_t nPending; // bit n: entry n passed and is still to be visited
    };
    const auto Enter = [&](const Node& node)
    {
        std::uint32_t nPassing = 0;
        for (std::uint32_t n = 0; n < node.m_nCount; ++n)
            nPassing |= static_cast<std::uint32_t>(nodeTest(node.m_aBoxes[n])) << n;
        return Step{&AsInterior(node), nPassing};
    };

    if (!m_pRoot || !nodeTest(m_rootBox))
        return;
    if (m_pRoot->IsLeaf())
    {
        visit(AsLeaf(*m_pRoot));
        return;
    }
    Step aSteps[32];
    int nDepth = 0;
    aSteps[0] = Enter(*m_pRoot);
    while (nDepth >= 0)
    {
        Step& step = aSteps[nDepth];
        if (step.nPending == 0)
        {
            --nDepth;
            continue;
        }
        const Node& child = *step.pNode->GetChild(static_cast<std::uint32_t>(std::countr_zero(step.nPending)));
        step.nPending &= step.nPending - 1;
        if (!child.IsLeaf())
            aSteps[++nDepth] = Enter(child);
        else if (!visit(AsLeaf(child)))
            return;
    }
}

template <class T>
template <class Test, class List>
std::size_t BoxTree<T>::Find(const Test& test, List& aFound) const
{
    const std::size_t nBefore = aFound.size();
    VisitLeaves([&](const Interval3d& box) { return test.MayHoldMet(box); },
                [&](const Leaf& leaf)
                {
                    std::uint32_t nMet = GetPassing(leaf, [&](const Interval3d& box) { return test.IsMet(box); });
                    if (nMet != 0)
                        ReserveFew(aFound);
                    for (; nMet != 0; nMet &= nMet - 1)
                        aFound.push_back(leaf.GetElement(static_cast<std::uint32_t>(std::countr_zero(nMet))));
                    return true;
                });
    for (T* pElement : m_aWaiting)
        if (test.IsMet(BoxOfElement(*pElement)))
            aFound.push_back(pElement);
    return aFound.size() - nBefore;
}

template <class T>
template <class List>
std::size_t BoxTree<T>::FindTouching(const Interval3d& box, List& aFound) const
{
    return Find(BoxTouchTest(box), aFound);
}

template <class T>
std::size_t BoxTree<T>::FindOverlapping(const Interval3d& box, std::vector<T*>& aFound) const
{
    return Find(BoxOverlapTest(box), aFound);
}

template <class T>
std::size_t BoxTree<T>::FindInside(const Interval3d& box, std::vector<T*>& aFound) const
{
    return Find(BoxInsideTest(box), aFound);
}

template <class T>
std::size_t BoxTree<T>::FindHolding(const Interval3d& box, std::vector<T*>& aFound) const
{
    return Find(BoxHoldingTest(box, GetBox()), aFound);
}

template <class T>
std::size_t BoxTree<T>::FindOnRay(const Line3d& line, std::vector<T*>& aFound, double dTol, double dMax) const
{
    return Find(RayBoxTest(line, dTol, dMax, GetBox()), aFound);
}

template <class T>
std::size_t BoxTree<T>::FindOnPlane(const Plane& plane, std::vector<T*>& aFound, double dTol) const
{
    return Find(BoxOnPlaneTest(plane, dTol, GetBox()), aFound);
}

template <class T>
std::size_t BoxTree<T>::FindOnNegativeSide(const std::vector<Plane>& aPlanes, std::vector<T*>& aFound,
                                           double dTol) const
{
    return Find(BoxOnNegativeSideTest(aPlanes, dTol), aFound);
}

template <class T>
template <class BoxTest, class Visitor>
void BoxTree<T>::Visit(BoxTest&& boxTest, Visitor&& visit) const
{
    bool bGoOn = true;
    const auto VisitEntry = [&](T* pElement, const Interval3d& box)
    {
        if (boxTest(box))
            bGoOn = visit(pElement, box);
    };
    VisitLeaves(boxTest,
                [&](const Leaf& leaf)
                {
                    for (std::uint32_t n = 0; n < leaf.m_nCount && bGoOn; ++n)
                        VisitEntry(leaf.GetElement(n), leaf.m_aBoxes[n]);
                    return bGoOn;
                });
    for (std::size_t n = 0; n < m_aWaiting.size() && bGoOn; ++n)
        VisitEntry(m_aWaiting[n], BoxOfElement(*m_aWaiting[n]));
}

template <class T>
void BoxTree<T>::GetElements(std::vector<T*>& aElements) const
{
    aElements.reserve(aElements.size() + GetCount());
    Visit([](const Interval3d&) { return true; },
          [&](T* pElement, const Interval3d&)
          {
              aElements.push_back(pElement);
              return true;
          });
}

template <class T>
Interval3d BoxTree<T>::GetBox() const
{
    Interval3d box = m_rootBox;
    for (const T* pElement : m_aWaiting)
        WidenBox(box, BoxOfElement(*pElement));
    return box;
}
} // namespace QRV
