#include "replay/CallTable.h"

#include "interface/ExportedCalls.h"
#include "replay/ArgumentReader.h"
#include "replay/CallSlots.h"

namespace tools
{
namespace
{
template <class T>
inline constexpr bool kIsScalar = std::is_arithmetic_v<T> || std::is_enum_v<T>;

template <class Slots, std::size_t... kPlaces, std::size_t kCount>
void AddResults(const Slots& slots, const std::array<Parameter, kCount>& aParameters, CallOutcome& outcome,
                std::index_sequence<kPlaces...>)
{
    [[maybe_unused]] const auto add = [&](const auto& slot, const Parameter& parameter)
    {
        if constexpr (requires { slot.GetResult(); })
        {
            using Value = std::remove_cvref_t<decltype(slot.GetResult())>;
            if constexpr (kIsScalar<Value>)
                if (parameter.nWay != nDirection::nIn)
                    outcome.aResults.emplace_back(parameter.strName, QRV::to_json_impl<Value>::f(slot.GetResult()));
        }
    };
    (add(std::get<kPlaces>(slots), aParameters[kPlaces]), ...);
}

template <class Call>
CallOutcome Run(const std::vector<Argument>& aArguments)
{
    ArgumentReader reader(aArguments);
    auto slots = FillSlots<Call>(reader);
    CallOutcome outcome;
    const auto begin = std::chrono::steady_clock::now();
    outcome.result = Invoke<Call>(slots);
    outcome.time = std::chrono::steady_clock::now() - begin;
    AddResults(slots, Call::kParameters, outcome, std::make_index_sequence<Call::kParameters.size()>());
    return outcome;
}

template <class Call>
constexpr std::size_t CountArguments()
{
    std::size_t nCount = 0;
    for (const Parameter& parameter : Call::kParameters)
        nCount += parameter.nWay != nDirection::nOut;
    return nCount;
}

template <class P>
constexpr bool IsFile(std::string_view strName)
{
    const bool bText = std::is_same_v<P, const char*> || std::is_same_v<P, const std::string&>;
    return bText && (strName.ends_with("path") || strName.ends_with("Path"));
}

template <class Call, class... Parameters>
constexpr bool TakesFile(QRV::Result (*)(Parameters...))
{
    [[maybe_unused]] std::size_t nPlace = 0;
    return (IsFile<Parameters>(Call::kParameters[nPlace++].strName) || ...);
}
} // namespace

CallTable::CallTable()
{
    const auto add = [&]<class Call>(bool bOwnName)
    {
        if constexpr (!Call::kScriptNames.empty())
            for (const std::string_view strName : Call::kScriptNames)
                if ((strName == Call::kName) == bOwnName)
                    m_aEntries[strName].push_back({Call::kName, Call::kFamily, CountArguments<Call>(),
                                                   TakesFile<Call>(Call::kFunction), &Run<Call>});
    };
    for (const bool bOwnName : {true, false})
        ExportedCalls::ForEach([&]<class Call>() { add.template operator()<Call>(bOwnName); });
}

const std::vector<CallEntry>& CallTable::Find(std::string_view strScriptName) const
{
    static const std::vector<CallEntry> kNone;
    const auto it = m_aEntries.find(strScriptName);
    return it == m_aEntries.end() ? kNone : it->second;
}
} // namespace tools
