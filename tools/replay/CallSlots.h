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
/// pointers, `Read(name, std::optional<T>&)`.
template <class P, nDirection nWay>
class Slot
{
public:
    using Value = std::remove_cvref_t<P>;

    template <class Source>
    Slot(Source& source, std::string_view strName)
    {
        if constexpr (nWay != nDirection::nOut)
            source.Read(strName, m_value);
    }

    Value& Get() { return m_value; }
    const Value& GetResult() const { return m_value; }

private:
    Value m_value{};
};

/// A list or record that need not be given.
template <class T>
class Slot<const T*, nDirection::nIn>
{
public:
    template <class Source>
    Slot(Source& source, std::string_view strName)
    {
        source.Read(strName, m_value);
    }

    const T* Get() const { return m_value ? &*m_value : nullptr; }

private:
    std::optional<T> m_value;
};

template <>
class Slot<const char*, nDirection::nIn>
{
public:
    template <class Source>
    Slot(Source& source, std::string_view strName)
    {
        source.Read(strName, m_strValue);
    }

    const char* Get() const { return m_strValue ? m_strValue->c_str() : nullptr; }

private:
    std::optional<std::string> m_strValue;
};

/// A result that need not be wanted; here it always is.
template <class T>
class Slot<T*, nDirection::nOut>
{
public:
    template <class Source>
    Slot(Source&, std::string_view)
    {
    }

    T* Get() { return &m_value; }
    const T& GetResult() const { return m_value; }

private:
    T m_value{};
};

/// Fills the slots of a call from a source, in order of the parameters, and hands them to `work` as a tuple.
template <class Call, class Source, class Work, class... Parameters, std::size_t... kPlaces>
auto WithSlots(QRV::Result (*)(Parameters...), Source& source, Work work, std::index_sequence<kPlaces...>)
{
    std::tuple<Slot<Parameters, Call::kParameters[kPlaces].nWay>...> slots{
        Slot<Parameters, Call::kParameters[kPlaces].nWay>(source, Call::kParameters[kPlaces].strName)...};
    return work(slots);
}

template <class Call, class Source, class Work>
auto WithSlots(Source& source, Work work)
{
    return WithSlots<Call>(Call::kFunction, source, work, std::make_index_sequence<Call::kParameters.size()>());
}

/// Makes the call.
template <class Call, class Slots>
QRV::Result Invoke(Slots& slots)
{
    return std::apply([](auto&... slot) { return Call::kFunction(slot.Get()...); }, slots);
}
} // namespace tools
