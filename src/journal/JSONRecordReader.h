/// How records are found in JSON and read from it.
#pragma once

#include <QRV/JSONConversion.h>

#include <tuple>

namespace QRV
{
inline constexpr const char* kObjectName = "objectName";

/// Whether a record may come as a plain array.
enum class nJSONArray
{
    nRefused,
    nAllowed
};

/// Finds the record that is to be read.
class RecordReader
{
public:
    /// @param pName       the class that the record must name, or `pOtherName` if that is given
    /// @param nArrayRule  an array is taken for the record without a name
    RecordReader(const nlohmann::json& source, const std::string& key, bool optional, const char* pName,
                 const char* pOtherName = nullptr, nJSONArray nArrayRule = nJSONArray::nRefused);
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    /// There is no such record, and `GetResultIfBad` is the answer.
    bool IsBad() const { return m_bBad; }
    bool GetResultIfBad() const { return m_bResultIfBad; }
    const nlohmann::json& GetValue() const { return *m_pValue; }

    template <class T>
    bool Read(const char* pKey, T& out, bool bOptional = false) const
    {
        return from_json_impl<T>::f(*m_pValue, pKey, out, bOptional);
    }

private:
    bool ParseText();
    bool HasName(const char* pName, const char* pOtherName);

    const nlohmann::json* m_pValue = nullptr;
    nlohmann::json m_parsed; ///< where the record came as text: the source stays as it is
    bool m_bOptional;
    bool m_bBad = true;
    bool m_bResultIfBad;
};

/// A field of a plain record, which is also its key.
template <class Record, class Value>
struct RecordField
{
    const char* pKey;
    Value Record::*pMember;
    bool bOptional;
};

template <class Record, class Value>
constexpr RecordField<Record, Value> Required(const char* pKey, Value Record::*pMember)
{
    return {pKey, pMember, false};
}

/// When it is absent the record keeps what it has.
template <class Record, class Value>
constexpr RecordField<Record, Value> Optional(const char* pKey, Value Record::*pMember)
{
    return {pKey, pMember, true};
}

/// States the name and, once, the fields of a record: `kName` and `Fields()`.
template <class Record>
struct RecordForm;

template <class Record>
nlohmann::json WriteRecord(const Record& record)
{
    nlohmann::json result{{kObjectName, RecordForm<Record>::kName}};
    const auto write = [&]<class Value>(const RecordField<Record, Value>& field)
    { result[field.pKey] = to_json_impl<Value>::f(record.*field.pMember); };
    std::apply([&](const auto&... field) { (write(field), ...); }, RecordForm<Record>::Fields());
    return result;
}

/// False at the first field that cannot be read; those before it are in the record by then.
template <class Record>
bool ReadRecord(const nlohmann::json& source, const std::string& key, Record& out, bool optional)
{
    const RecordReader reader(source, key, optional, RecordForm<Record>::kName);
    if (reader.IsBad())
        return reader.GetResultIfBad();
    return std::apply([&](const auto&... field)
                      { return (reader.Read(field.pKey, out.*field.pMember, field.bOptional) && ...); },
                      RecordForm<Record>::Fields());
}
} // namespace QRV
