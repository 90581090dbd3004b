#include "editor/RtfCodePage.h"

#include <unicode/ucnv.h>

#include <vector>

namespace {

const char *icuName(int codePage)
{
    switch (codePage) {
    case 437:
        return "ibm-437";
    case 850:
        return "ibm-850";
    case 874:
        return "windows-874";
    case 932:
        return "windows-31j";
    case 936:
        return "gbk";
    case 949:
        return "windows-949";
    case 950:
        return "windows-950";
    case 1250:
        return "windows-1250";
    case 1251:
        return "windows-1251";
    case 1252:
        return "windows-1252";
    case 1253:
        return "windows-1253";
    case 1254:
        return "windows-1254";
    case 1255:
        return "windows-1255";
    case 1256:
        return "windows-1256";
    case 1257:
        return "windows-1257";
    case 1258:
        return "windows-1258";
    case 10000:
        return "macintosh";
    case 65001:
        return "UTF-8";
    default:
        return "windows-1252";
    }
}

bool isAscii(const QByteArray &bytes)
{
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    }
    return true;
}

} // namespace

struct RtfCodePage::Converter {
    UConverter *handle = nullptr;
    ~Converter()
    {
        if (handle)
            ucnv_close(handle);
    }
};

RtfCodePage::RtfCodePage(int codePage) : m_number(codePage), m_converter(std::make_unique<Converter>())
{
    UErrorCode status = U_ZERO_ERROR;
    m_converter->handle = ucnv_open(icuName(codePage), &status);
    if (U_FAILURE(status))
        m_converter->handle = nullptr;
}

RtfCodePage::~RtfCodePage() = default;

QString RtfCodePage::decode(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return {};
    if (m_number == symbol) {
        QString text;
        text.reserve(bytes.size());
        for (const char byte : bytes) {
            if (const char16_t c = symbolCharacter(uchar(byte)))
                text.append(QChar(c));
        }
        return text;
    }
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    if (!m_converter->handle)
        return QString::fromLatin1(bytes);
    std::vector<UChar> buffer(size_t(bytes.size()) * 2 + 4);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_reset(m_converter->handle);
    const int32_t length = ucnv_toUChars(m_converter->handle, buffer.data(), int32_t(buffer.size()), bytes.constData(),
                                         int32_t(bytes.size()), &status);
    if (U_FAILURE(status))
        return QString::fromLatin1(bytes);
    return QString(reinterpret_cast<const QChar *>(buffer.data()), length);
}

int RtfCodePage::forCharset(int charset)
{
    switch (charset) {
    case 2:
        return symbol;
    case 77:
        return 10000;
    case 128:
        return 932;
    case 129:
        return 949;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 255:
        return 437;
    default:
        return 0;
    }
}

char16_t RtfCodePage::symbolCharacter(uchar byte)
{
    // Bytes 0x20 to 0xFF of the Symbol font; 0 where it has no character.
    static constexpr char16_t characters[224] = {
        0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026, 0x220B, 0x0028, 0x0029, 0x2217, 0x002B, 0x002C, 0x2212,
        0x002E, 0x002F, 0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037, 0x0038, 0x0039, 0x003A, 0x003B,
        0x003C, 0x003D, 0x003E, 0x003F, 0x2245, 0x0391, 0x0392, 0x03A7, 0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399,
        0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F, 0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9,
        0x039E, 0x03A8, 0x0396, 0x005B, 0x2234, 0x005D, 0x22A5, 0x005F, 0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5,
        0x03C6, 0x03B3, 0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, 0x03C0, 0x03B8, 0x03C1, 0x03C3,
        0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6, 0x007B, 0x007C, 0x007D, 0x223C, 0x0000, 0x0000, 0x0000,
        0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000,
        0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000, 0x0000,
        0x0000, 0x0000, 0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, 0x2666, 0x2665, 0x2660, 0x2194,
        0x2190, 0x2191, 0x2192, 0x2193, 0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022, 0x00F7, 0x2260,
        0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5, 0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205, 0x2229,
        0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209, 0x2220, 0x2207, 0x00AE, 0x00A9, 0x2122, 0x220F,
        0x221A, 0x22C5, 0x00AC, 0x2227, 0x2228, 0x21D4, 0x21D0, 0x21D1, 0x21D2, 0x21D3, 0x25CA, 0x2329, 0x00AE, 0x00A9,
        0x2122, 0x2211, 0x239B, 0x239C, 0x239D, 0x23A1, 0x23A2, 0x23A3, 0x23A7, 0x23A8, 0x23A9, 0x23AA, 0x0000, 0x232A,
        0x222B, 0x2320, 0x23AE, 0x2321, 0x239E, 0x239F, 0x23A0, 0x23A4, 0x23A5, 0x23A6, 0x23AB, 0x23AC, 0x23AD, 0x0000,
    };
    return byte >= 0x20 ? characters[byte - 0x20] : 0;
}
