#include "model/Layer.h"

#include "model/JoinableOf.inl"

namespace QRV
{
template class ObjectOf<Layer, Object>;
template class SearchedOf<Layer, Object, LayerOrder>;
template class NamedObjectOf<Layer, LayerOrder>;
template class JoinableOf<Layer, LayerAttribute, LayerOrder>;

bool LayerOrder::operator()(const Layer* pA, const Layer* pB) const
{
    const int n = pA->GetDisplayName().compare(pB->GetDisplayName());
    return n < 0 || (n == 0 && ByObjectID()(pA, pB));
}

bool LayerOrder::operator()(const Layer* pLayer, std::string_view sName) const
{
    return pLayer->GetDisplayName() < sName;
}

Object* Layer::FindEquivalent(History& history) const
{
    const All& layers = history.GetSearchSet<Layer>();
    for (auto it = layers.GetLowerBound(std::string_view(m_sName)); it != layers.end() && CountsAs(**it); ++it)
        if (*it != this)
            return *it;
    return nullptr;
}
} // namespace QRV
