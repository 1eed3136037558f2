/// Objects of the model's dress and order: materials, textures, layers and levels.
#pragma once

#include "model/SearchedOf.h"

#include <string>

namespace QRV
{
/// A named object that nothing owns and that stands in a search set of its History.
///
/// `T` gives `kNotInSet`, the code of the audit, and `CountsAs(other)`: whether it is as good as another of its class.
/// Its list of fields says where the name stands.
template <class T, class Order = ByObjectID>
class NamedObjectOf : public SearchedOf<T, Object, Order>
{
public:
    const std::string& GetDisplayName() const { return m_sName; }
    /// Any name; several objects may have the same.
    void SetDisplayName(const std::string& sName) { this->AssignKey(m_sName, sName); }

    bool IsNonOwned() const override { return true; }
    void Changed(unsigned /*nFlags*/) override {}
    /// The first of the other History's set that counts as this one.
    Object* FindEquivalent(History& history) const override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

protected:
    NamedObjectOf() = default;
    explicit NamedObjectOf(const std::string& sName) : m_sName(sName) {}
    NamedObjectOf(const NamedObjectOf&) = default;

    std::string m_sName;
};
} // namespace QRV
