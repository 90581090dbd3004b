#include "archive/TextFileReader.h"

#include "archive/BoundedFileReader.h"

#include <QFileInfo>
#include <QStringDecoder>

#include <array>

namespace {

// 0x80..0x9F; the five bytes Windows leaves undefined keep their C1 control code.
constexpr std::array<char16_t, 32> windows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

QString fromWindows1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *out = text.data();
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        *out++ = value >= 0x80 && value < 0xA0 ? QChar(windows1252High[value - 0x80]) : QChar(value);
    }
    return text;
}

} // namespace

Result<TextFileReader::Text> TextFileReader::read(const QString &path)
{
    const auto bytes = BoundedFileReader::read(path, maximumSize);
    if (!bytes)
        return bytes.error();
    return decode(*bytes);
}

TextFileReader::Text TextFileReader::decode(QByteArrayView bytes)
{
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        QStringDecoder utf16(bytes.startsWith("\xFF\xFE") ? QStringConverter::Utf16LE : QStringConverter::Utf16BE);
        QString text = utf16(bytes.sliced(2));
        if (!utf16.hasError())
            return {text, false};
    }
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = utf8(bytes);
    if (!utf8.hasError())
        return {text, false};
    return {fromWindows1252(bytes), true};
}

QString TextFileReader::windows1252Note(const QString &path)
{
    return tr("„%1“ war nicht UTF-8-kodiert und wurde als Windows-1252 gelesen.").arg(QFileInfo(path).fileName());
}
