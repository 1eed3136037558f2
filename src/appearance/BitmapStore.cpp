#include "appearance/BitmapStore.h"

#include "history/HistoryRegistry.h"

namespace QRV
{
namespace
{
constexpr std::string_view kJPEGStart = "\xFF\xD8";
constexpr std::string_view kPNGStart = "\x89PNG\r\n\x1A\n";

/// FNV-1a.
std::uint64_t ComputeHash(std::string_view data)
{
    constexpr std::uint64_t kOffsetBasis = 0xcbf29ce484222325;
    constexpr std::uint64_t kPrime = 0x100000001b3;
    std::uint64_t nHash = kOffsetBasis;
    for (const char c : data)
        nHash = (nHash ^ static_cast<unsigned char>(c)) * kPrime;
    return nHash;
}

BitmapStore& GetStore()
{
    return HistoryRegistry::Get().GetBitmaps();
}
} // namespace

Result::nResultType CheckBitmapFormat(std::string_view data)
{
    if (data.size() < kPNGStart.size())
        return Result::nTextureBadSize;
    return data.starts_with(kJPEGStart) || data.starts_with(kPNGStart) ? Result::nOK : Result::nTextureBadFormat;
}

std::uint64_t BitmapStore::Add(std::string_view data)
{
    const std::uint64_t nHash = ComputeHash(data);
    const auto itIndex = m_aBitmapIndexByHash.find(nHash);
    if (itIndex != m_aBitmapIndexByHash.end())
    {
        AddReference(itIndex->second);
        return itIndex->second;
    }
    const std::uint64_t nIndex = m_nNextBitmapIndex;
    const auto itBitmap = m_aBitmaps.emplace(nIndex, Bitmap{std::string(data), nHash, 1}).first;
    try
    {
        m_aBitmapIndexByHash.emplace(nHash, nIndex);
    }
    catch (...)
    {
        m_aBitmaps.erase(itBitmap);
        throw;
    }
    ++m_nNextBitmapIndex;
    return nIndex;
}

void BitmapStore::AddReference(std::uint64_t nIndex) noexcept
{
    const auto it = m_aBitmaps.find(nIndex);
    if (it != m_aBitmaps.end())
        ++it->second.nReferences;
}

void BitmapStore::Release(std::uint64_t nIndex) noexcept
{
    const auto it = m_aBitmaps.find(nIndex);
    if (it == m_aBitmaps.end() || --it->second.nReferences != 0)
        return;
    m_aBitmapIndexByHash.erase(it->second.nHash);
    m_aBitmaps.erase(it);
}

const std::string& BitmapStore::GetData(std::uint64_t nIndex) const
{
    static const std::string strNone;
    const auto it = m_aBitmaps.find(nIndex);
    return it == m_aBitmaps.end() ? strNone : it->second.strData;
}

std::uint64_t BitmapStore::GetReferenceCount(std::uint64_t nIndex) const
{
    const auto it = m_aBitmaps.find(nIndex);
    return it == m_aBitmaps.end() ? 0 : it->second.nReferences;
}

void BitmapStore::Clear() noexcept
{
    m_aBitmapIndexByHash.clear();
    m_aBitmaps.clear();
}

BitmapReference::BitmapReference(std::string_view data) : m_nIndex(GetStore().Add(data)) {}

BitmapReference::BitmapReference(const BitmapReference& other) noexcept : m_nIndex(other.m_nIndex)
{
    if (m_nIndex != INVALID_ID)
        GetStore().AddReference(m_nIndex);
}

BitmapReference::~BitmapReference()
{
    if (m_nIndex != INVALID_ID)
        GetStore().Release(m_nIndex);
}

const std::string& BitmapReference::GetData() const
{
    return GetStore().GetData(m_nIndex);
}
} // namespace QRV
