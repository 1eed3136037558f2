/// The arguments of a line as the values that a call takes.
#pragma once

#include "interface/ExportedCall.h"
#include "replay/Script.h"

#include <QRV/JSONConversion.h>

#include <optional>
#include <string>
#include <vector>

namespace tools
{
template <class T>
inline constexpr bool kIsList = false;
template <class T>
inline constexpr bool kIsList<std::vector<T>> = true;

/// Hands out the arguments in order. Throws ScriptError at one that is not what the call takes.
class ArgumentReader
{
public:
    explicit ArgumentReader(const std::vector<Argument>& aArguments) : m_aArguments(aArguments) {}

    template <class T>
    void Read(std::string_view strName, T& out)
    {
        Convert(strName, Next(), out);
    }

    /// "undefined" stands for none.
    template <class T>
    void Read(std::string_view strName, std::optional<T>& out)
    {
        if (const Argument& argument = Next(); !argument.bUndefined)
            Convert(strName, argument, out.emplace());
    }

    /// A journal says nothing of results; here all are wanted.
    template <class T>
    void ReadResult(std::string_view, T&)
    {
    }
    template <class T>
    void ReadResult(std::string_view, std::optional<T>& out)
    {
        out.emplace();
    }

private:
    const Argument& Next() { return m_aArguments[m_nNext++]; }

    template <class T>
    static void Convert(std::string_view strName, const Argument& argument, T& out)
    {
        try
        {
            // The library takes one element for a list of one; a journal does not write it so.
            if ((!kIsList<T> || argument.value.is_array()) &&
                QRV::from_json_impl<T>::f(argument.value, std::string(), out, false))
                return;
        }
        catch (const nlohmann::json::exception&)
        {
        }
        throw ScriptError(argument.nColumn, std::string(strName) + " cannot be read from this");
    }

    const std::vector<Argument>& m_aArguments;
    std::size_t m_nNext = 0;
};
} // namespace tools
