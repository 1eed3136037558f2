/// Values of the host's own on objects of the model.
#pragma once

#include "model/Attribute.h"
#include "model/SearchedOf.h"

#include <string>
#include <string_view>

namespace QRV
{
class StringAttribute;

/// By key, then value, byte by byte, and by id among equals.
struct StringAttributeOrder
{
    using is_transparent = void;
    bool operator()(const StringAttribute* pA, const StringAttribute* pB) const;
    bool operator()(const StringAttribute* pAttribute, std::string_view sKey) const;
};

/// A key with a value that any number of objects share. The key is never empty.
class StringAttribute : public SearchedOf<StringAttribute, Attribute, StringAttributeOrder>
{
public:
    static constexpr nObjectType kType = nStringAttributeType;
    static constexpr const char* kName = "StringAttribute";
    static constexpr auto Fields()
    {
        return std::make_tuple(Saved("key", &StringAttribute::m_sKey), Saved("value", &StringAttribute::m_sValue),
                               Saved("copy", &StringAttribute::m_nCopyBehavior),
                               Saved("split", &StringAttribute::m_bSplit));
    }

    /// @param bSplit  a part split off an owner takes the attribute along
    StringAttribute(const std::string& sKey, const std::string& sValue, nCopyBehavior nCopy, bool bSplit)
        : m_sKey(sKey), m_sValue(sValue), m_nCopyBehavior(nCopy), m_bSplit(bSplit)
    {
    }

    const std::string& GetKey() const { return m_sKey; }
    const std::string& GetValue() const { return m_sValue; }
    void SetValue(const std::string& sValue) { AssignKey(m_sValue, sValue); }

    bool IsInherited() const override { return m_bSplit; }
    nCopyBehavior GetCopyRule() const override { return m_nCopyBehavior; }
    /// Another key.
    bool ConflictsWith(const Attribute& other) const override;
    Object* FindEquivalent(History& history) const override;
    bool Load(IArchive& archive) override;
    std::size_t CheckValidity(std::vector<Result>& aResults) const override;

private:
    std::string m_sKey;
    std::string m_sValue;
    nCopyBehavior m_nCopyBehavior;
    bool m_bSplit;
};
extern template class ObjectOf<StringAttribute, Attribute>;
extern template class SearchedOf<StringAttribute, Attribute, StringAttributeOrder>;
} // namespace QRV
