/// The script of a journal, read one line at a time: what the library writes, and nothing more.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tools
{
/// What a line says that no journal says.
class ScriptError : public std::runtime_error
{
public:
    /// @param nColumn  of the byte where it begins, from 1
    ScriptError(std::size_t nColumn, const std::string& strMessage) : std::runtime_error(strMessage), m_nColumn(nColumn)
    {
    }

    std::size_t m_nColumn;
};

/// The values of the script's variables. Every value is JSON: numbers, texts and lists as themselves, values of
/// geometry as the records of <QRV/JSONConversion.h>, an invalid id as there.
using Variables = std::map<std::string, nlohmann::json, std::less<>>;

struct Argument
{
    nlohmann::json value;
    bool bUndefined = false;
    std::size_t nColumn = 0;
};

struct Statement
{
    enum class nKind
    {
        nBlank,
        nHead,  ///< function runtest()
        nOpen,  ///< {
        nTruth, ///< var result = true;
        nCall,
        nReturn, ///< return result;
        nClose   ///< }
    };

    nKind m_nKind = nKind::nBlank;
    std::string m_strVariable; ///< what the value goes to; empty for a plain call
    std::string m_strCall;     ///< without "QRV."
    std::vector<Argument> m_aArguments;
    std::size_t m_nColumn = 1; ///< of the name called, else of the statement
};

/// Reads a line without its end. Throws ScriptError. Lists and records go no deeper than any of the library's own, and
/// numbers are finite.
/// @param variables  those that the line may speak of
Statement ReadStatement(std::string_view strLine, const Variables& variables);
} // namespace tools
