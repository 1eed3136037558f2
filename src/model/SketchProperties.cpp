#include "model/SketchProperties.h"

#include "model/SearchedOf.inl"

namespace QRV
{
template class ObjectOf<SketchProperties, Object>;
template class SearchedOf<SketchProperties, Object>;

SketchProperties* SketchProperties::Find(const History& history)
{
    const All& all = history.GetSearchSet<SketchProperties>();
    return all.size() == 0 ? nullptr : *all.begin();
}

void SketchProperties::SetTransform(History& history, const Transf3d& transform)
{
    SketchProperties* pProperties = Find(history);
    if (pProperties && FieldValue::AreSame(pProperties->m_transform, transform))
        return;
    if (!pProperties)
    {
        pProperties = &history.Create<SketchProperties>();
        pProperties->AddToSearch();
    }
    pProperties->RecordChange();
    pProperties->m_transform = transform;
}
} // namespace QRV
