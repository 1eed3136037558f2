/// The name that a host gives an object.
#pragma once

#include "model/Attribute.h"

#include <string>

namespace QRV
{
/// An object carries at most one.
class ObjectPropertiesAttribute : public ObjectOf<ObjectPropertiesAttribute, Attribute>
{
public:
    static constexpr nObjectType kType = nObjectPropertiesAttributeType;
    static constexpr const char* kName = "ObjectPropertiesAttribute";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("reportarea", &ObjectPropertiesAttribute::m_bReportArea),
                               Saved("objectname", &ObjectPropertiesAttribute::m_sObjectName));
    }

    ObjectPropertiesAttribute(const std::string& sObjectName, bool bReportArea)
        : m_bReportArea(bReportArea), m_sObjectName(sObjectName)
    {
    }

    const std::string& GetObjectName() const { return m_sObjectName; }
    void SetObjectName(const std::string& sObjectName) { Assign(m_sObjectName, sObjectName); }
    /// Whether the host counts the object's area in its reports.
    bool ReportsArea() const { return m_bReportArea; }
    void SetReportArea(bool bReportArea) { Assign(m_bReportArea, bReportArea); }

    nCopyBehavior GetCopyRule() const override { return nCopyOwn; }

private:
    bool m_bReportArea;
    std::string m_sObjectName;
};
extern template class ObjectOf<ObjectPropertiesAttribute, Attribute>;
} // namespace QRV
