/// Every exported call as a value: what it is, and with what it is called.
#pragma once

#include "interface/ExportedCall.h"
#include "proof/ArgumentSource.h"

#include <memory>
#include <span>

namespace QRV
{
/// A call with its arguments, which it keeps, results included.
class PreparedCall
{
public:
    virtual ~PreparedCall() = default;
    virtual Result Run() = 0;
    /// Of two calls of one kind.
    virtual bool HasSameResults(const PreparedCall& other) const = 0;
    /// The first result that does not hold, after a call that failed, what its frame promises: none, or as it was
    /// passed.
    virtual std::string_view FindWrittenResult() const = 0;
};

struct CallKind
{
    std::string_view strName;
    tools::nFamily family;
    std::span<const std::string_view> aScriptNames; ///< none for a call that no journal shows
    std::span<const tools::Parameter> aParameters;
    bool bTakesPoints; ///< it draws, or asks of a place
    bool bTakesCallbacks;
    /// What the source asks of the model does not get into the journal.
    std::unique_ptr<PreparedCall> (*prepare)(ArgumentSource& source);

    bool IsReadOnly() const { return strName.ends_with("ReadOnly"); }
    bool Changes() const { return family == tools::nFamily::nModifying || family == tools::nFamily::nBothWay; }
    /// Works on one given History.
    bool TakesHistory() const { return !aParameters.empty() && aParameters[0].strName == "nHistoryID"; }
};

/// By name.
std::span<const CallKind> GetCallKinds();
const CallKind& GetCallKind(std::string_view strName);
} // namespace QRV
