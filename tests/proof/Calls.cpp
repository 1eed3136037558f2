#include "proof/Calls.h"

#include <ExportedCalls.h>

#include <stdexcept>

namespace QRV
{
namespace
{
/// Keeps an argument of an exported function between calls, and passes it on.
template <class Parameter>
struct Slot;

/// By value or by reference: kept as it is.
template <class T>
requires(!std::is_pointer_v<std::remove_cvref_t<T>>)
struct Slot<T>
{
    std::remove_cvref_t<T> m_value;

    static Slot From(ArgumentSource& source, std::string_view strName)
    {
        return {source.Argument<std::remove_cvref_t<T>>(strName)};
    }
    T Pass() { return static_cast<T>(m_value); }
};

/// By a pointer, which may be null.
template <class T>
struct Slot<T*>
{
    std::optional<std::remove_const_t<T>> m_value;

    static Slot From(ArgumentSource& source, std::string_view strName)
    {
        const bool bGiven = source.IsGiven();
        std::remove_const_t<T> value = source.Argument<std::remove_const_t<T>>(strName);
        return bGiven ? Slot{std::move(value)} : Slot{};
    }
    T* Pass() { return m_value ? &*m_value : nullptr; }
};

template <>
struct Slot<const char*>
{
    std::optional<std::string> m_value;

    static Slot From(ArgumentSource& source, std::string_view strName)
    {
        Slot<std::string*> text = Slot<std::string*>::From(source, strName);
        return {std::move(text.m_value)};
    }
    const char* Pass() { return m_value ? m_value->c_str() : nullptr; }
};

template <>
struct Slot<const char*&>
{
    const char* m_pText = nullptr;

    static Slot From(ArgumentSource& source, std::string_view strName)
    {
        source.Argument<bool>(strName);
        return {};
    }
    const char*& Pass() { return m_pText; }
};

template <class... Parameters>
class PreparedFunction : public PreparedCall
{
public:
    using Function = Result (*)(Parameters...);

    PreparedFunction(Function pFunction, std::span<const tools::Parameter> aParameters, ArgumentSource& source)
        : PreparedFunction(pFunction, aParameters, source, std::index_sequence_for<Parameters...>{})
    {
    }
    Result Run() override
    {
        return std::apply([this](auto&... slot) { return m_pFunction(slot.Pass()...); }, m_slots);
    }

private:
    template <std::size_t... I>
    PreparedFunction(Function pFunction, [[maybe_unused]] std::span<const tools::Parameter> aParameters,
                     [[maybe_unused]] ArgumentSource& source, std::index_sequence<I...>)
        : m_pFunction(pFunction), m_slots{Slot<Parameters>::From(source, aParameters[I].strName)...}
    {
    }

    Function m_pFunction;
    std::tuple<Slot<Parameters>...> m_slots;
};

template <class T>
constexpr bool kIsPoint = std::is_same_v<std::remove_cvref_t<T>, Point3d> ||
                          std::is_same_v<std::remove_cvref_t<T>, std::vector<Point3d>>;
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
            { return std::make_unique<PreparedFunction<Parameters...>>(Call::kFunction, Call::kParameters, source); }};
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
