#include "replay/ModelReport.h"

#include <QRV/API.h>

#include <openssl/evp.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace tools
{
using namespace QRV;

namespace
{
std::vector<std::uint64_t> GetHistories()
{
    std::vector<std::uint64_t> aHistories;
    APIGetAllHistoriesReadOnly(aHistories, true);
    std::sort(aHistories.begin(), aHistories.end());
    return aHistories;
}

template <class Work>
void ForEachObject(Work work)
{
    for (const std::uint64_t nHistory : GetHistories())
    {
        std::vector<std::uint64_t> aObjects;
        APIGetAllObjectsByTypeReadOnly(nHistory, nUnspecifiedType, aObjects);
        std::sort(aObjects.begin(), aObjects.end());
        for (const std::uint64_t nObject : aObjects)
            work(nHistory, nObject);
    }
}

/// What an object takes in memory hangs on what was asked of it, since answers are kept.
void EraseMemoryFigures(std::string& strText)
{
    constexpr std::string_view kBehind = " bytes in memory";
    std::size_t nKept = 0, nFrom = 0;
    for (std::size_t n = 0; (n = strText.find(kBehind, nFrom)) != std::string::npos; nFrom = n + kBehind.size())
    {
        const std::size_t nDigits = strText.find_last_not_of("0123456789", n - 1) + 1;
        std::copy(strText.begin() + nFrom, strText.begin() + nDigits, strText.begin() + nKept);
        nKept += nDigits - nFrom;
        std::copy_n(strText.begin() + n, kBehind.size(), strText.begin() + nKept);
        nKept += kBehind.size();
    }
    strText.erase(nKept, nFrom - nKept);
}

class SHA256
{
public:
    SHA256() : m_pContext(EVP_MD_CTX_new(), &EVP_MD_CTX_free)
    {
        Expect(m_pContext && EVP_DigestInit_ex(m_pContext.get(), EVP_sha256(), nullptr));
    }

    void Add(const std::string& strText) { Expect(EVP_DigestUpdate(m_pContext.get(), strText.data(), strText.size())); }

    std::string GetHex()
    {
        constexpr char kDigits[] = "0123456789abcdef";
        unsigned char aBytes[EVP_MAX_MD_SIZE];
        unsigned nCount = 0;
        Expect(EVP_DigestFinal_ex(m_pContext.get(), aBytes, &nCount));
        std::string strHex;
        for (unsigned i = 0; i < nCount; ++i)
            strHex.append({kDigits[aBytes[i] >> 4], kDigits[aBytes[i] & 15]});
        return strHex;
    }

private:
    static void Expect(bool bGood)
    {
        if (!bGood)
            throw std::runtime_error("no SHA-256 on this machine");
    }

    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> m_pContext;
};
} // namespace

std::map<std::string, std::size_t> CountObjects()
{
    std::map<std::string, std::size_t> counts;
    ForEachObject(
        [&](std::uint64_t nHistory, std::uint64_t nObject)
        {
            const char* pName = nullptr;
            if (APIGetObjectNameReadOnly(nHistory, nObject, pName).IsGood())
                ++counts[pName];
        });
    return counts;
}

std::vector<Result> AuditAll()
{
    std::vector<Result> aFindings;
    for (const std::uint64_t nHistory : GetHistories())
        if (const Result result = APICheckHistoryValidityReadOnly(nHistory, aFindings); !result.IsGood())
            aFindings.push_back(result);
    return aFindings;
}

std::string DumpObject(std::uint64_t nHistory, std::uint64_t nObject)
{
    std::string strText;
    APIDebugObjectReadOnly(nHistory, nObject, strText);
    EraseMemoryFigures(strText);
    return strText;
}

std::string DigestModel()
{
    SHA256 digest;
    ForEachObject([&](std::uint64_t nHistory, std::uint64_t nObject) { digest.Add(DumpObject(nHistory, nObject)); });
    return digest.GetHex();
}
} // namespace tools
