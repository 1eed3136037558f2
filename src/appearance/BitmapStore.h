/// The encoded images of textures, each once in the process.
#pragma once

#include <QRV/Ids.h>
#include <QRV/Result.h>

#include <map>
#include <string>
#include <string_view>

namespace QRV
{
/// JPEG and PNG are known by their first bytes. Gives nOK, nTextureBadSize (fewer than 8 bytes) or nTextureBadFormat.
Result::nResultType CheckBitmapFormat(std::string_view data);

/// Encoded images by number, with counts of their references. Equal images are one, told by a hash of 64 bits alone.
/// The bytes mean nothing here. Numbers are never given out twice.
class BitmapStore
{
public:
    /// Takes one reference, also on an image that is here already. Changes nothing when it throws.
    std::uint64_t Add(std::string_view data);
    /// One more reference; nothing for an unknown number.
    void AddReference(std::uint64_t nIndex) noexcept;
    /// One reference less; the image goes with the last. Nothing for an unknown number.
    void Release(std::uint64_t nIndex) noexcept;
    /// Empty for an unknown number.
    const std::string& GetData(std::uint64_t nIndex) const;
    std::uint64_t GetReferenceCount(std::uint64_t nIndex) const;
    std::size_t GetBitmapCount() const { return m_aBitmaps.size(); }
    void Clear() noexcept;

private:
    struct Bitmap
    {
        std::string strData;
        std::uint64_t nHash = 0;
        std::uint64_t nReferences = 0;
    };

    std::map<std::uint64_t, std::uint64_t> m_aBitmapIndexByHash;
    std::map<std::uint64_t, Bitmap> m_aBitmaps;
    std::uint64_t m_nNextBitmapIndex = 0;
};

/// One reference to a bitmap of the process's store, or to none.
class BitmapReference
{
public:
    BitmapReference() = default;
    explicit BitmapReference(std::string_view data);
    BitmapReference(const BitmapReference& other) noexcept;
    BitmapReference(BitmapReference&& other) noexcept { swap(other); }
    BitmapReference& operator=(BitmapReference other) noexcept
    {
        swap(other);
        return *this;
    }
    ~BitmapReference();

    void swap(BitmapReference& other) noexcept { std::swap(m_nIndex, other.m_nIndex); }
    friend void swap(BitmapReference& a, BitmapReference& b) noexcept { a.swap(b); }
    bool operator==(const BitmapReference&) const = default;

    /// INVALID_ID for none.
    std::uint64_t GetIndex() const { return m_nIndex; }
    /// Empty for none.
    const std::string& GetData() const;

private:
    std::uint64_t m_nIndex = INVALID_ID;
};
} // namespace QRV
