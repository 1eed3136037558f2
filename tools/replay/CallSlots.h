/// Room for the arguments and results of one exported call.
#pragma once

#include "interface/ExportedCall.h"

#include <array>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace tools
{
/// Holds what is passed for one parameter. What goes in is read from a source that has `Read(name, T&)` and, for
/// pointers, which may be null, `Read(name, std::optional<T>&)`; what comes out starts as its `ReadResult` of the same
/// shapes says.
template <class P, nDirection nWay>
class Slot
{
public:
    using Value = std::remove_cvref_t<P>;

    template <class Source>
    Slot(Source& source, std::string_view strName)
    {
        if constexpr (nWay == nDirection::nOut)
            source.ReadResult(strName, m_value);
        else
            source.Read(strName, m_value);
    }

    Value& Get() { return m_value; }
    static constexpr bool IsWanted() { return true; }
    const Value& GetResult() const { return m_value; }

private:
    Value m_value{};
};

/// A list, record or text that need not be given.
template <class T>
class Slot<const T*, nDirection::nIn>
{
public:
    template <class Source>
    Slot(Source& source, std::string_view strName)
    {
        source.Read(strName, m_value);
    }

    const T* Get() const
    {
        if constexpr (kIsText)
            return m_value ? m_value->c_str() : nullptr;
        else
            return m_value ? &*m_value : nullptr;
    }

private:
    static constexpr bool kIsText = std::is_same_v<T, char>;

    std::optional<std::conditional_t<kIsText, std::string, T>> m_value;
};

/// A result that need not be wanted.
template <class T>
class Slot<T*, nDirection::nOut>
{
public:
    template <class Source>
    Slot(Source& source, std::string_view strName)
    {
        source.ReadResult(strName, m_value);
    }

    T* Get() { return m_value ? &*m_value : nullptr; }
    bool IsWanted() const { return m_value.has_value(); }
    const T& GetResult() const { return *m_value; }

private:
    std::optional<T> m_value;
};

/// The slots of a call, filled from a source in order of the parameters.
template <class Call, class Source, class... Parameters, std::size_t... kPlaces>
auto FillSlots(QRV::Result (*)(Parameters...), [[maybe_unused]] Source& source, std::index_sequence<kPlaces...>)
{
    return std::tuple<Slot<Parameters, Call::kParameters[kPlaces].nWay>...>{
        Slot<Parameters, Call::kParameters[kPlaces].nWay>(source, Call::kParameters[kPlaces].strName)...};
}

template <class Call, class Source>
auto FillSlots(Source& source)
{
    return FillSlots<Call>(Call::kFunction, source, std::make_index_sequence<Call::kParameters.size()>());
}

/// Makes the call.
template <class Call, class Slots>
QRV::Result Invoke(Slots& slots)
{
    return std::apply([](auto&... slot) { return Call::kFunction(slot.Get()...); }, slots);
}
} // namespace tools
