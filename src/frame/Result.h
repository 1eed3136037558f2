/// The outcome of an exported call.
#pragma once

#include <QRV/Export.h>
#include <QRV/Ids.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace QRV
{
class ResultImplementation;

/// Empty when all went well; otherwise one code, as an error or as a warning, with the numbers or objects that its
/// message needs. The first error stands, an error replaces a warning, the first warning stands.
///
/// A handle: copies share one body and see each other's later codes, except that clearing lets go of the body only
/// here. Handles of one body may be copied and released in different threads; setting codes is for one thread at a
/// time.
class QRV_API Result
{
public:
    /// Names and numbers of all codes; their messages stand beside them in ResultCodes.inl.
    enum nResultType : std::uint32_t
    {
#define QRV_RESULT_CODE(name, message) name,
#include <QRV/ResultCodes.inl>
#undef QRV_RESULT_CODE
    };

    /// Good for 0, otherwise an error.
    Result(nResultType nType = nOK) noexcept;

    /// True also for a warning: the call did its work.
    bool IsGood() const;
    /// 0 when good.
    nResultType GetErrorCode() const;
    /// 0 unless a warning is held.
    nResultType GetWarningCode() const;
    bool HasWarning() const;
    /// The message of the error or warning with its numbers filled in (-1 where one is missing), "OK" without one. At
    /// most 1023 characters.
    std::string GetErrorString() const;
    /// True when the code names objects. A single entry without an object id names a History and does not count.
    bool HasHistoryObjectIDs() const;
    /// Appends the objects that the code names.
    /// @return how many were appended
    std::uint64_t GetHistoryObjectIDs(std::vector<ObjectHistoryID>& aIDs) const;

    /// Sets an error with the numbers (history ids, delta ids, counts) of its message. An error already held stays, a
    /// warning is replaced. Code 0 clears an error and leaves a warning.
    ///
    /// Does not throw: where memory for the code has run out, the error is `nCaughtException`.
    void SetErrorCode(nResultType nType, const std::vector<std::uint64_t>& aNumbers = {}) noexcept;
    void SetErrorCode(nResultType nType, std::uint64_t nNumber) noexcept;
    /// The same with the objects that the message names: history and object id of the first, then of the second.
    void SetErrorCode(nResultType nType, const std::vector<ObjectHistoryID>& aObjects) noexcept;

    /// Sets a warning. An error or a warning already held stays. Code 0 clears a warning.
    void SetWarningCode(nResultType nType, const std::vector<std::uint64_t>& aNumbers = {});
    void SetWarningCode(nResultType nType, std::uint64_t nNumber);
    void SetWarningCode(nResultType nType, const std::vector<ObjectHistoryID>& aObjects);

    /// The body, made with code 0 if there is none.
    ResultImplementation* GetImplementation();

private:
    void SetError(nResultType nType, std::span<const std::uint64_t> aNumbers,
                  std::span<const ObjectHistoryID> aObjects) noexcept;
    void SetWarning(nResultType nType, std::span<const std::uint64_t> aNumbers,
                    std::span<const ObjectHistoryID> aObjects);

    std::shared_ptr<ResultImplementation> m_pImplementation;
};
} // namespace QRV
