#include "proof/Calls.h"

#include "interface/ExportedCalls.h"
#include "replay/CallSlots.h"

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
        if constexpr (std::is_pointer_v<T>)
            m_source.Argument<bool>(strName); // a text of the library's own: there is none yet
        else
            out = m_source.Argument<T>(strName);
    }
    template <class T>
    void Read(std::string_view strName, std::optional<T>& out)
    {
        const bool bGiven = m_source.IsGiven();
        T value = m_source.Argument<T>(strName);
        if (bGiven)
            out = std::move(value);
    }
    template <class T>
    void ReadResult(std::string_view strName, T& out)
    {
        if (!m_source.AreResultsEmpty())
            Read(strName, out);
    }
    template <class T>
    void ReadResult(std::string_view strName, std::optional<T>& out)
    {
        if (m_source.AreResultsEmpty())
            out.emplace();
        else
            Read(strName, out);
    }

private:
    ArgumentSource& m_source;
};

template <class Call>
class PreparedFunction : public PreparedCall
{
public:
    explicit PreparedFunction(SlotSource source) : m_slots(tools::FillSlots<Call>(source)) {}
    Result Run() override { return tools::Invoke<Call>(m_slots); }

private:
    decltype(tools::FillSlots<Call>(std::declval<SlotSource&>())) m_slots;
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
            { return std::make_unique<PreparedFunction<Call>>(SlotSource(source)); }};
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
