/// What a host in a country of decimal commas does to its process.
#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace QRV
{
/// While it lives, streams and C functions write "1.234,5" by default; the latter where such a locale is installed.
class CommaLocale
{
public:
    CommaLocale() : m_before(std::locale::global(std::locale(std::locale::classic(), new Punctuation)))
    {
        std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    }
    ~CommaLocale()
    {
        std::locale::global(m_before);
        std::setlocale(LC_NUMERIC, m_strNumericBefore.c_str());
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    struct Punctuation : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::string m_strNumericBefore = std::setlocale(LC_NUMERIC, nullptr);
    std::locale m_before;
};
} // namespace QRV
