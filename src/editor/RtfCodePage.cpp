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
