#include "journal/JSONRecordReader.h"

namespace QRV
{
using nlohmann::json;

namespace
{
/// No record of ours goes deeper; text that does is refused before it can exhaust the stack of whoever copies it.
constexpr int kMaxDepth = 64;
} // namespace

RecordReader::RecordReader(const json& source, const std::string& key, bool optional, const char* pName,
                           const char* pOtherName, nJSONArray nArrayRule)
    : m_bOptional(optional), m_bResultIfBad(optional)
{
    m_pValue = FindJSONValue(source, key);
    if (!m_pValue)
        return;
    if (m_pValue->is_string() && !key.empty() && !ParseText())
        return;
    m_bBad = !(m_pValue->is_array() && nArrayRule == nJSONArray::nAllowed) && !HasName(pName, pOtherName);
}

/// Takes the JSON in the string for the value. False when it is too deep.
bool RecordReader::ParseText()
{
    struct TooDeep
    {
    };
    const auto checkDepth = [](int nDepth, json::parse_event_t, json&)
    { return nDepth < kMaxDepth ? true : throw TooDeep(); };
    try
    {
        m_parsed = json::parse(m_pValue->get_ref<const std::string&>(), checkDepth);
    }
    catch (const TooDeep&)
    {
        m_bResultIfBad = false;
        return false;
    }
    m_pValue = &m_parsed;
    return true;
}

bool RecordReader::HasName(const char* pName, const char* pOtherName)
{
    const json* pHeld = m_pValue->is_object() ? FindJSONValue(*m_pValue, kObjectName) : nullptr;
    if (pHeld && pHeld->is_string())
    {
        const std::string& strHeld = pHeld->get_ref<const std::string&>();
        return strHeld == pName || (pOtherName && strHeld == pOtherName);
    }
    m_bResultIfBad = m_bOptional && (m_pValue->is_null() || (m_pValue->is_structured() && m_pValue->empty()));
    return false;
}
} // namespace QRV
