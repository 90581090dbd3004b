#include "import/CSVTextDecoder.h"

#include <optional>

namespace {

enum class Endian { little, big };

char16_t unitAt(const QByteArray &bytes, qsizetype offset, qsizetype unit, Endian endian)
{
    const auto first = uchar(bytes.at(offset + 2 * unit));
    const auto second = uchar(bytes.at(offset + 2 * unit + 1));
    return endian == Endian::little ? char16_t(first | second << 8) : char16_t(first << 8 | second);
}

// The units from byte `offset` on, or nothing when a surrogate is unpaired or a byte is left.
std::optional<QString> decodeUtf16(const QByteArray &bytes, qsizetype offset, Endian endian)
{
    if ((bytes.size() - offset) % 2 != 0)
        return std::nullopt;
    const qsizetype units = (bytes.size() - offset) / 2;
    QString text(units, Qt::Uninitialized);
    QChar *out = text.data();
    for (qsizetype i = 0; i < units; ++i) {
        const QChar unit(unitAt(bytes, offset, i, endian));
        if (unit.isHighSurrogate()) {
            if (i + 1 >= units || !QChar(unitAt(bytes, offset, i + 1, endian)).isLowSurrogate())
                return std::nullopt;
        } else if (unit.isLowSurrogate() && (i == 0 || !out[i - 1].isHighSurrogate())) {
            return std::nullopt;
        }
        out[i] = unit;
    }
    return text;
}

// Unmarked UTF-16 is recognised by its zero bytes: a spreadsheet export is mostly Latin
// text, whose units all have a zero high byte. More than half of the first 512 units must
// look like that (zero high byte, non-zero low byte) for the chosen byte order, and the
// whole file must then decode without an unpaired surrogate or a NUL character. UTF-8 text
// has no zero bytes at all, so it never passes.
std::optional<QString> unmarkedUtf16(const QByteArray &bytes, Endian endian)
{
    if (bytes.size() < 2 || bytes.size() % 2 != 0)
        return std::nullopt;
    const qsizetype sampled = std::min<qsizetype>(bytes.size() / 2, 512);
    qsizetype latin = 0;
    for (qsizetype i = 0; i < sampled; ++i) {
        const char16_t unit = unitAt(bytes, 0, i, endian);
        if (unit < 0x100 && unit != 0)
            ++latin;
    }
    if (latin * 2 <= sampled)
        return std::nullopt;
    auto text = decodeUtf16(bytes, 0, endian);
    if (!text || text->contains(QChar(0)))
        return std::nullopt;
    return text;
}

qsizetype utf8SequenceLength(uchar lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

} // namespace

qsizetype CSVTextDecoder::firstInvalidUtf8Byte(const QByteArray &bytes)
{
    const auto *data = reinterpret_cast<const uchar *>(bytes.constData());
    const qsizetype size = bytes.size();
    qsizetype i = 0;
    while (i < size) {
        const uchar lead = data[i];
        const qsizetype length = utf8SequenceLength(lead);
        if (length == 0 || i + length > size)
            return i;
        // The second byte's range rules out overlong forms, surrogates and values past U+10FFFF.
        uchar low = 0x80, high = 0xBF;
        if (lead == 0xE0)
            low = 0xA0;
        else if (lead == 0xED)
            high = 0x9F;
        else if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F;
        for (qsizetype k = 1; k < length; ++k) {
            const uchar next = data[i + k];
            if (k == 1 ? (next < low || next > high) : (next < 0x80 || next > 0xBF))
                return i;
        }
        i += length;
    }
    return -1;
}

Result<DecodedText> CSVTextDecoder::decodeText(const QByteArray &bytes)
{
    const auto unreadable = [](const QString &finding) {
        return Error{tr("CSV Encoding nicht lesbar:") + QLatin1Char(' ') + finding};
    };
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        const Endian endian = bytes.startsWith("\xFF\xFE") ? Endian::little : Endian::big;
        const QString name = endian == Endian::little ? QStringLiteral("UTF-16LE") : QStringLiteral("UTF-16BE");
        if (auto text = decodeUtf16(bytes, 2, endian))
            return DecodedText{*std::move(text), name + QStringLiteral(" (BOM)")};
        return unreadable(tr("BOM %1, aber keine gültige UTF-16-Folge").arg(name));
    }
    const bool utf8Mark = bytes.startsWith("\xEF\xBB\xBF");
    if (!utf8Mark) {
        if (auto text = unmarkedUtf16(bytes, Endian::little))
            return DecodedText{*std::move(text), QStringLiteral("UTF-16LE")};
        if (auto text = unmarkedUtf16(bytes, Endian::big))
            return DecodedText{*std::move(text), QStringLiteral("UTF-16BE")};
    }
    // A view, not a copy: the file can be tens of megabytes.
    const QByteArray body = utf8Mark ? QByteArray::fromRawData(bytes.constData() + 3, bytes.size() - 3) : bytes;
    if (const qsizetype invalid = firstInvalidUtf8Byte(body); invalid >= 0) {
        const qsizetype offset = invalid + (utf8Mark ? 3 : 0);
        const QString hex = QString::number(uchar(bytes.at(offset)), 16).toUpper().rightJustified(2, QLatin1Char('0'));
        return unreadable(tr("kein UTF-16, UTF-8 ungültig ab Byte %1 (0x%2)").arg(offset).arg(hex));
    }
    return DecodedText{QString::fromUtf8(body), utf8Mark ? QStringLiteral("UTF-8 (BOM)") : QStringLiteral("UTF-8")};
}
