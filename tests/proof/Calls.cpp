#include "proof/Calls.h"

#include "interface/ExportedCalls.h"
#include "replay/CallSlots.h"

#include <QRV/Journaling.h>

#include <algorithm>
#include <cstring>
#include <ranges>
#include <stdexcept>

namespace QRV
{
namespace
{
/// Every argument from an `ArgumentSource`.
class SlotSource
{
public:
    explicit SlotSource(ArgumentSource& source) : m_source(source) {}

    template <class T>
    void Read(std::string_view strName, T& out)
    {
        out = m_source.Argument<T>(strName);
    }
    template <class T>
    void Read(std::string_view strName, std::optional<T>& out)
    {
        out = m_source.OptionalArgument<T>(strName);
    }
    template <class T>
    void ReadResult(std::string_view strName, T& out)
    {
        if constexpr (!std::is_pointer_v<T>) // a text of the library's own: there is none yet
            if (!m_source.AreResultsEmpty())
                out = m_source.Leftover<T>(strName);
    }
    template <class T>
    void ReadResult(std::string_view strName, std::optional<T>& out)
    {
        if (m_source.AreResultsEmpty())
            out.emplace();
        else if (m_source.Leftover<bool>(strName))
            out = m_source.Leftover<T>(strName);
    }

private:
    ArgumentSource& m_source;
};

template <class T>
bool IsSame(const T& a, const T& b)
{
    if constexpr (std::is_same_v<T, Result>)
        return a.GetErrorCode() == b.GetErrorCode();
    else if constexpr (std::ranges::range<T>)
        return std::ranges::equal(a, b, [](const auto& x, const auto& y) { return IsSame(x, y); });
    else if constexpr (requires { a.first; })
        return IsSame(a.first, b.first) && IsSame(a.second, b.second);
    else if constexpr (std::equality_comparable<T>)
        return a == b;
    else
        return std::memcmp(&a, &b, sizeof(T)) == 0;
}

/// One result of a call that failed.
template <class T>
bool IsLeftAs(tools::nBefore before, const T& passed, const T& value)
{
    if (before == tools::nBefore::nKept)
        return IsSame(value, passed);
    if constexpr (std::is_same_v<T, std::uint64_t>)
        if (before == tools::nBefore::nEmptied)
            return value == INVALID_ID;
    return IsSame(value, T{});
}

template <class Call>
class PreparedFunction : public PreparedCall
{
public:
    explicit PreparedFunction(SlotSource source) : m_slots(tools::FillSlots<Call>(source)), m_passed(m_slots) {}
    Result Run() override { return tools::Invoke<Call>(m_slots); }
    bool HasSameResults(const PreparedCall& other) const override
    {
        return HasSameResults(static_cast<const PreparedFunction&>(other), std::make_index_sequence<kCount>());
    }
    std::string_view FindWrittenResult() const override
    {
        return FindWrittenResult(std::make_index_sequence<kCount>());
    }

private:
    static constexpr std::size_t kCount = Call::kParameters.size();

    template <std::size_t... kPlaces>
    std::string_view FindWrittenResult(std::index_sequence<kPlaces...>) const
    {
        std::string_view strFound;
        (void)(... && (IsLeft<kPlaces>() || (strFound = Call::kParameters[kPlaces].strName, false)));
        return strFound;
    }
    template <std::size_t... kPlaces>
    bool HasSameResults([[maybe_unused]] const PreparedFunction& other, std::index_sequence<kPlaces...>) const
    {
        return (... && IsSameResult<kPlaces>(other));
    }
    template <std::size_t kPlace>
    bool IsSameResult(const PreparedFunction& other) const
    {
        if constexpr (Call::kParameters[kPlace].nWay == tools::nDirection::nIn)
            return true;
        else if (!std::get<kPlace>(m_slots).IsWanted())
            return true;
        else
            return IsSame(std::get<kPlace>(m_slots).GetResult(), std::get<kPlace>(other.m_slots).GetResult());
    }
    template <std::size_t kPlace>
    bool IsLeft() const
    {
        constexpr tools::Parameter parameter = Call::kParameters[kPlace];
        if constexpr (parameter.before == tools::nBefore::nUnsaid)
            return true;
        else if (!std::get<kPlace>(m_slots).IsWanted())
            return true;
        else
            return IsLeftAs(parameter.before, std::get<kPlace>(m_passed).GetResult(),
                            std::get<kPlace>(m_slots).GetResult());
    }

    decltype(tools::FillSlots<Call>(std::declval<SlotSource&>())) m_slots;
    decltype(m_slots) m_passed;
};

template <class T>
constexpr bool kIsPoint =
    std::is_same_v<std::remove_cvref_t<T>, Point3d> || std::is_same_v<std::remove_cvref_t<T>, std::vector<Point3d>>;
template <class T>
constexpr bool kIsCallback = false;
template <class Signature>
constexpr bool kIsCallback<std::function<Signature>> = true;

template <class Call, class... Parameters>
CallKind Describe(Result (*)(Parameters...))
{
    return {Call::kName,
            Call::kFamily,
            Call::kScriptNames,
            Call::kParameters,
            (kIsPoint<Parameters> || ...),
            (kIsCallback<std::remove_cvref_t<Parameters>> || ...),
            [](ArgumentSource& source) -> std::unique_ptr<PreparedCall>
            {
                const QRVJournalingSuspend aside("QRV");
                return std::make_unique<PreparedFunction<Call>>(SlotSource(source));
            }};
}

std::vector<CallKind> DescribeAll()
{
    std::vector<CallKind> aKinds;
    tools::ExportedCalls::ForEach([&]<class Call>() { aKinds.push_back(Describe<Call>(Call::kFunction)); });
    return aKinds;
}
} // namespace

std::span<const CallKind> GetCallKinds()
{
    static const std::vector<CallKind> s_aKinds = DescribeAll();
    return s_aKinds;
}

const CallKind& GetCallKind(std::string_view strName)
{
    for (const CallKind& kind : GetCallKinds())
        if (kind.strName == strName)
            return kind;
    throw std::logic_error("no such call");
}
} // namespace QRV
