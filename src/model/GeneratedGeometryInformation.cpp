#include "model/GeneratedGeometryInformation.h"

#include "model/SearchedOf.inl"

namespace QRV
{
template class ObjectOf<GeneratedGeometryInformation, Object>;
template class SearchedOf<GeneratedGeometryInformation, Object>;

GeneratedGeometryInformation* GeneratedGeometryInformation::Find(const History& history, nGeneratorType nGenerator)
{
    const All& all = history.GetSearchSet<GeneratedGeometryInformation>();
    return all.size() != 0 && (*all.begin())->m_nGenerator == nGenerator ? *all.begin() : nullptr;
}

void GeneratedGeometryInformation::Write(History& history, nGeneratorType nGenerator, const Words& words)
{
    const All& all = history.GetSearchSet<GeneratedGeometryInformation>();
    if (all.size() == 0)
        history.Create<GeneratedGeometryInformation>().AddToSearch();
    GeneratedGeometryInformation& information = **all.begin();
    information.Assign(information.m_nGenerator, nGenerator);
    information.Assign(information.m_sName, words.sName);
    information.Assign(information.m_sField1, words.sField1);
    information.Assign(information.m_sField2, words.sField2);
    information.Assign(information.m_sField3, words.sField3);
}
} // namespace QRV
