#include "replay/Script.h"

#include <QRV/JSONConversion.h>

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <limits>

namespace tools
{
using nlohmann::json;

namespace
{
constexpr int kMaxDepth = 64;
constexpr std::string_view kUnknownHistory = "/*Unknown History ID*/";

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsNameStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

class LineReader
{
public:
    LineReader(std::string_view strLine, const Variables& variables) : m_strLine(strLine), m_variables(variables) {}

    Statement Read();

private:
    // --- text
    char Peek() const { return m_nAt < m_strLine.size() ? m_strLine[m_nAt] : '\0'; }
    bool Take(std::string_view strText);
    void Expect(std::string_view strText);
    void SkipBlanks();
    std::string_view ReadName();
    [[noreturn]] void Refuse(const std::string& strMessage) const { throw ScriptError(m_nAt + 1, strMessage); }

    // --- statements
    void ReadDeclaration(Statement& statement);
    void ReadAssignment(Statement& statement, std::string_view strVariable);
    void ReadCall(Statement& statement);

    // --- values
    Argument ReadArgument();
    json ReadVariable();
    json ReadGeometry();
    json ReadCoordinates(std::string_view strClass, std::initializer_list<const char*> aKeys);
    json ReadPoint() { return ReadCoordinates("Point3d", {"x", "y", "z"}); }
    json ReadVector(std::string_view strClass) { return ReadCoordinates(strClass, {"x", "y", "z"}); }
    json ReadRigidTransform();
    json ReadJSON(int nDepth);
    json ReadList(int nDepth);
    json ReadRecord(int nDepth);
    json ReadText();
    json ReadNumber();
    /// What stands in a journal for a number that is none, as callers give it and calls refuse it.
    bool TakeNonNumber(json& number);
    std::size_t SkipDigits();
    double ToDouble(std::string_view strNumber, std::size_t nBegin) const;

    std::string_view m_strLine;
    const Variables& m_variables;
    std::size_t m_nAt = 0;
};

bool LineReader::Take(std::string_view strText)
{
    if (!m_strLine.substr(m_nAt).starts_with(strText))
        return false;
    m_nAt += strText.size();
    return true;
}

void LineReader::Expect(std::string_view strText)
{
    if (!Take(strText))
        Refuse("expected \"" + std::string(strText) + "\"");
}

void LineReader::SkipBlanks()
{
    while (Peek() == ' ')
        ++m_nAt;
}

std::string_view LineReader::ReadName()
{
    const std::size_t nBegin = m_nAt;
    if (!IsNameStart(Peek()))
        Refuse("expected a name");
    while (IsNameStart(Peek()) || IsDigit(Peek()))
        ++m_nAt;
    return m_strLine.substr(nBegin, m_nAt - nBegin);
}

Statement LineReader::Read()
{
    using nKind = Statement::nKind;
    Statement statement;
    SkipBlanks();
    statement.m_nColumn = m_nAt + 1;
    if (m_nAt == m_strLine.size())
        return statement;
    if (Take("function runtest()"))
        statement.m_nKind = nKind::nHead;
    else if (Take("{"))
        statement.m_nKind = nKind::nOpen;
    else if (Take("}"))
        statement.m_nKind = nKind::nClose;
    else if (Take("return result;"))
        statement.m_nKind = nKind::nReturn;
    else if (Take("var "))
        ReadDeclaration(statement);
    else if (Take("QRV."))
        ReadCall(statement);
    else if (const std::size_t nBegin = m_nAt; IsNameStart(Peek()))
    {
        const std::string_view strVariable = ReadName();
        if (!m_variables.contains(strVariable))
            throw ScriptError(nBegin + 1, "no statement of a journal begins so");
        ReadAssignment(statement, strVariable);
    }
    else
        Refuse("no statement of a journal begins so");
    SkipBlanks();
    if (m_nAt != m_strLine.size())
        Refuse("expected the end of the line");
    return statement;
}

void LineReader::ReadDeclaration(Statement& statement)
{
    const std::string_view strVariable = ReadName();
    if (strVariable == "result")
    {
        Expect(" = true;");
        statement.m_nKind = Statement::nKind::nTruth;
        return;
    }
    ReadAssignment(statement, strVariable);
}

void LineReader::ReadAssignment(Statement& statement, std::string_view strVariable)
{
    statement.m_strVariable = strVariable;
    Expect(" = QRV.");
    ReadCall(statement);
}

void LineReader::ReadCall(Statement& statement)
{
    statement.m_nKind = Statement::nKind::nCall;
    statement.m_nColumn = m_nAt + 1;
    statement.m_strCall = ReadName();
    Expect("(");
    while (!Take(")"))
    {
        if (!statement.m_aArguments.empty())
            Expect(", ");
        statement.m_aArguments.push_back(ReadArgument());
    }
    Expect(";");
}

Argument LineReader::ReadArgument()
{
    Argument argument;
    argument.nColumn = m_nAt + 1;
    if (Take("QRV.INVALID_ID"))
        argument.value = QRV::kInvalidIDInJSON;
    else if (Take("QRV.Geom."))
        argument.value = ReadGeometry();
    else if (json number; TakeNonNumber(number))
        argument.value = std::move(number);
    else if (IsNameStart(Peek()) && !m_strLine.substr(m_nAt).starts_with("true") &&
             !m_strLine.substr(m_nAt).starts_with("false"))
    {
        argument.value = ReadVariable();
        argument.bUndefined = argument.value.is_null();
    }
    else
    {
        argument.value = ReadJSON(0);
        if (argument.value.is_number_integer())
            Take(kUnknownHistory);
    }
    return argument;
}

/// Null for "undefined".
json LineReader::ReadVariable()
{
    const std::size_t nBegin = m_nAt;
    const std::string_view strName = ReadName();
    if (strName == "undefined")
        return nullptr;
    const auto it = m_variables.find(strName);
    if (it == m_variables.end())
        throw ScriptError(nBegin + 1, "\"" + std::string(strName) + "\" stands for nothing");
    return it->second;
}

json LineReader::ReadGeometry()
{
    const std::size_t nBegin = m_nAt;
    const std::string_view strClass = ReadName();
    m_nAt = nBegin;
    if (strClass == "Point3d" || strClass == "Vector3d" || strClass == "UnitVector3d")
        return ReadVector(strClass);
    if (strClass == "Vector2d")
        return ReadCoordinates(strClass, {"x", "y"});
    if (strClass == "MakeRigidTransform")
        return ReadRigidTransform();

    const bool bPlane = strClass == "Plane";
    if (!bPlane && strClass != "Line3d")
        Refuse("no value of geometry is written so");
    json record{{"objectName", strClass}};
    Expect(strClass);
    Expect("(QRV.Geom.");
    record["point"] = ReadPoint();
    Expect(", QRV.Geom.");
    record[bPlane ? "normal" : "vector"] = ReadVector(bPlane ? "UnitVector3d" : "Vector3d");
    Expect(")");
    return record;
}

json LineReader::ReadCoordinates(std::string_view strClass, std::initializer_list<const char*> aKeys)
{
    json record = json::object();
    Expect(strClass);
    const char* pSeparator = "(";
    for (const char* pKey : aKeys)
    {
        Expect(pSeparator);
        record.emplace(pKey, ReadNumber());
        pSeparator = ", ";
    }
    Expect(")");
    record.emplace("objectName", strClass);
    return record;
}

json LineReader::ReadRigidTransform()
{
    Expect("MakeRigidTransform(QRV.Geom.");
    QRV::Point3d origin;
    QRV::FromJSON(ReadPoint(), "", origin, false);
    QRV::Vector3d aAxes[3];
    for (QRV::Vector3d& axis : aAxes)
    {
        Expect(", QRV.Geom.");
        QRV::FromJSON(ReadVector("Vector3d"), "", axis, false);
    }
    Expect(")");
    constexpr bool kAsGiven = true;
    return QRV::ToJSON(QRV::Transf3d(origin, aAxes[0], aAxes[1], aAxes[2], kAsGiven));
}

json LineReader::ReadJSON(int nDepth)
{
    if (nDepth == kMaxDepth)
        Refuse("nested too deep");
    switch (Peek())
    {
    case '[':
        return ReadList(nDepth);
    case '{':
        return ReadRecord(nDepth);
    case '"':
        return ReadText();
    case 't':
        Expect("true");
        return true;
    case 'f':
        Expect("false");
        return false;
    default:
        return ReadNumber();
    }
}

json LineReader::ReadList(int nDepth)
{
    json list = json::array();
    Expect("[");
    while (!Take("]"))
    {
        if (!list.empty())
            Expect(",");
        list.push_back(ReadJSON(nDepth + 1));
    }
    return list;
}

json LineReader::ReadRecord(int nDepth)
{
    json record = json::object();
    Expect("{");
    while (!Take("}"))
    {
        if (!record.empty())
            Expect(",");
        if (Peek() != '"')
            Refuse("expected a key");
        const std::size_t nBegin = m_nAt;
        const json key = ReadText();
        Expect(":");
        if (!record.emplace(key.get_ref<const std::string&>(), ReadJSON(nDepth + 1)).second)
            throw ScriptError(nBegin + 1, "the key stands here twice");
    }
    return record;
}

json LineReader::ReadText()
{
    const std::size_t nBegin = m_nAt;
    for (++m_nAt; m_nAt < m_strLine.size() && Peek() != '"'; ++m_nAt)
        if (Peek() == '\\')
            ++m_nAt;
    if (m_nAt >= m_strLine.size())
        throw ScriptError(nBegin + 1, "the text has no end");
    ++m_nAt;
    try
    {
        return json::parse(m_strLine.substr(nBegin, m_nAt - nBegin));
    }
    catch (const json::parse_error& error)
    {
        throw ScriptError(nBegin + std::max<std::size_t>(error.byte, 1), "no text in JSON's form");
    }
}

std::size_t LineReader::SkipDigits()
{
    const std::size_t nBegin = m_nAt;
    while (IsDigit(Peek()))
        ++m_nAt;
    return m_nAt - nBegin;
}

bool LineReader::TakeNonNumber(json& number)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr std::pair<std::string_view, double> aWords[] = {
        {"nan", kNaN}, {"-nan", -kNaN}, {"inf", kInfinity}, {"-inf", -kInfinity}, {"null", kNaN}};
    const std::size_t nBegin = m_nAt;
    Take("-");
    if (IsNameStart(Peek()))
        ReadName();
    const std::string_view strFound = m_strLine.substr(nBegin, m_nAt - nBegin);
    for (const auto& [strWord, dNumber] : aWords)
        if (strFound == strWord)
        {
            number = dNumber;
            return true;
        }
    m_nAt = nBegin;
    return false;
}

json LineReader::ReadNumber()
{
    const std::size_t nBegin = m_nAt;
    if (json number; TakeNonNumber(number))
        return number;
    const auto check = [&](bool bGood)
    {
        if (!bGood)
            throw ScriptError(nBegin + 1, "expected a value");
    };
    const bool bNegative = Take("-");
    check(Take("0") ? !IsDigit(Peek()) : SkipDigits() > 0);
    bool bWhole = true;
    if (Take("."))
    {
        bWhole = false;
        check(SkipDigits() > 0);
    }
    if (Take("e") || Take("E"))
    {
        bWhole = false;
        if (!Take("+"))
            Take("-");
        check(SkipDigits() > 0);
    }
    check(!IsNameStart(Peek()) && Peek() != '.');

    const std::string_view strNumber = m_strLine.substr(nBegin, m_nAt - nBegin);
    const char* pEnd = strNumber.data() + strNumber.size();
    std::uint64_t nUnsigned = 0;
    if (bWhole && !bNegative && std::from_chars(strNumber.data(), pEnd, nUnsigned).ec == std::errc())
        return nUnsigned;
    std::int64_t nSigned = 0;
    const bool bSigned = bWhole && std::from_chars(strNumber.data(), pEnd, nSigned).ec == std::errc();
    if (bSigned && nSigned != 0) // a zero below 0 is one of coordinates
        return nSigned;
    return ToDouble(strNumber, nBegin);
}

double LineReader::ToDouble(std::string_view strNumber, std::size_t nBegin) const
{
    double dNumber = 0.0;
    const auto answer = std::from_chars(strNumber.data(), strNumber.data() + strNumber.size(), dNumber);
    if (answer.ec != std::errc())
        throw ScriptError(nBegin + 1, "the number is too large or too small");
    return dNumber;
}
} // namespace

Statement ReadStatement(std::string_view strLine, const Variables& variables)
{
    return LineReader(strLine, variables).Read();
}
} // namespace tools
