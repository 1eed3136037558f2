/// What a call that changes something holds for its duration.
#pragma once

#include <QRV/Result.h>

namespace QRV
{
class History;

/// Tells the progress hooks of the start and the end, keeps its History busy meanwhile so that no callback of the host
/// can change it under the call, and ends the transaction, if there is one, on every way out.
class APICallScope
{
public:
    /// `pName` outlives the scope.
    explicit APICallScope(const char* pName) : m_pName(pName) {}
    /// Ends what is still open, then tells the end hook the result.
    ~APICallScope();
    APICallScope(const APICallScope&) = delete;
    APICallScope& operator=(const APICallScope&) = delete;

    /// Calls the start hook, which may throw.
    void Start() const;
    /// Finds the History and keeps it busy. False with code 4 for an unknown id and 69 for a History that is busy.
    bool Occupy(std::uint64_t nHistoryID);
    /// Opens a transaction on the History that is occupied. False with code 69 when one is open.
    bool Begin();
    /// Ends the transaction, if one is open: a good result commits, any other rolls back. Then the History is free.
    void End() noexcept;

    History& GetHistory() const { return *m_pHistory; }

    Result m_result;

private:
    const char* m_pName;
    History* m_pHistory = nullptr;            ///< kept busy
    History* m_pTransactionHistory = nullptr; ///< the same while the transaction is open
};
} // namespace QRV
