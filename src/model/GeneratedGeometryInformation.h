/// What program made the geometry of a History.
#pragma once

#include "model/SearchedOf.h"

#include <array>
#include <string>

namespace QRV
{
/// Words of the host on where a model comes from. A sound History has at most one.
class GeneratedGeometryInformation : public SearchedOf<GeneratedGeometryInformation, Object>
{
public:
    static constexpr nObjectType kType = nGeneratedGeometryInformationType;
    static constexpr const char* kName = "GeneratedGeometryInformation";
    static constexpr auto Fields()
    {
        using Self = GeneratedGeometryInformation;
        return std::make_tuple(Saved("generator type", &Self::m_nGenerator), Saved("name", &Self::m_sName),
                               Saved("field1", &Self::m_sField1), Saved("field2", &Self::m_sField2),
                               Saved("field3", &Self::m_sField3));
    }

    /// Who made it. Stored as a number.
    enum nGeneratorType : std::uint32_t
    {
        nUnknown = 0,
        nOstrelModel = 1,
        nHalyxFamily = 2
    };
    struct Words
    {
        std::string sName;
        std::string sField1;
        std::string sField2;
        std::string sField3;
    };

    /// That of the History if it is of that generator; otherwise null.
    static GeneratedGeometryInformation* Find(const History& history, nGeneratorType nGenerator);
    /// Makes it, or writes over the one there is, of whatever generator.
    static void Write(History& history, nGeneratorType nGenerator, const Words& words);
    Words GetWords() const { return {m_sName, m_sField1, m_sField2, m_sField3}; }

    bool IsNonOwned() const override { return true; }
    void Changed(unsigned /*nFlags*/) override {}

private:
    nGeneratorType m_nGenerator = nUnknown;
    std::string m_sName;
    std::string m_sField1;
    std::string m_sField2;
    std::string m_sField3;
};
extern template class ObjectOf<GeneratedGeometryInformation, Object>;
extern template class SearchedOf<GeneratedGeometryInformation, Object>;
} // namespace QRV
