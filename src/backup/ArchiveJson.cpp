#include "backup/ArchiveJson.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

void appendEscape(QByteArray &out, unsigned char c)
{
    switch (c) {
    case '"':
        out.append("\\\"");
        break;
    case '\\':
        out.append("\\\\");
        break;
    case '/':
        out.append("\\/");
        break;
    case '\b':
        out.append("\\b");
        break;
    case '\f':
        out.append("\\f");
        break;
    case '\n':
        out.append("\\n");
        break;
    case '\r':
        out.append("\\r");
        break;
    case '\t':
        out.append("\\t");
        break;
    default: {
        static const char hex[] = "0123456789abcdef";
        const char escaped[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 0xF]};
        out.append(escaped, sizeof escaped);
    }
    }
}

bool needsEscape(unsigned char c)
{
    return c < 0x20 || c == '"' || c == '\\' || c == '/';
}

// Eight bytes at once: true when none needs escaping. A false alarm only sends the bytes
// through the exact loop.
bool isPlainWord(quint64 word)
{
    constexpr quint64 ones = 0x0101010101010101ULL;
    constexpr quint64 highs = 0x8080808080808080ULL;
    const auto hasZeroByte = [](quint64 x) { return (x - ones) & ~x & highs; };
    const quint64 controls = (word - ones * 0x20) & ~word & highs;
    return (hasZeroByte(word ^ (ones * '"')) | hasZeroByte(word ^ (ones * '\\')) | hasZeroByte(word ^ (ones * '/')) |
            controls) == 0;
}

void appendNumber(QByteArray &out, double value)
{
    if (!std::isfinite(value)) {
        out.append("null");
        return;
    }
    if (value == std::trunc(value) && std::fabs(value) < 9007199254740992.0) {
        out.append(QByteArray::number(qint64(value)));
        return;
    }
    out.append(QByteArray::number(value, 'g', QLocale::FloatingPointShortest));
}

bool codePointLess(const QString &a, const QString &b)
{
    const auto ua = a.toUcs4();
    const auto ub = b.toUcs4();
    return std::lexicographical_compare(ua.begin(), ua.end(), ub.begin(), ub.end());
}

void appendValue(QByteArray &out, const QJsonValue &value, int depth, const ArchiveJson::KeyLess &keyLess)
{
    const QByteArray indent(2 * (depth + 1), ' ');
    const QByteArray closingIndent(2 * depth, ' ');
    switch (value.type()) {
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        out.append("null");
        break;
    case QJsonValue::Bool:
        out.append(value.toBool() ? "true" : "false");
        break;
    case QJsonValue::Double:
        appendNumber(out, value.toDouble());
        break;
    case QJsonValue::String:
        ArchiveJson::appendString(out, value.toString());
        break;
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        if (array.isEmpty()) {
            out.append("[]");
            break;
        }
        out.append("[\n");
        for (qsizetype i = 0; i < array.size(); ++i) {
            out.append(indent);
            appendValue(out, array.at(i), depth + 1, keyLess);
            out.append(i + 1 < array.size() ? ",\n" : "\n");
        }
        out.append(closingIndent);
        out.append(']');
        break;
    }
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        if (object.isEmpty()) {
            out.append("{}");
            break;
        }
        QStringList keys = object.keys();
        std::sort(keys.begin(), keys.end(), keyLess);
        out.append("{\n");
        for (qsizetype i = 0; i < keys.size(); ++i) {
            out.append(indent);
            ArchiveJson::appendString(out, keys.at(i));
            out.append(" : ");
            appendValue(out, object.value(keys.at(i)), depth + 1, keyLess);
            out.append(i + 1 < keys.size() ? ",\n" : "\n");
        }
        out.append(closingIndent);
        out.append('}');
        break;
    }
    }
}

} // namespace

QByteArray ArchiveJson::encode(const QJsonValue &value)
{
    return encode(value, codePointLess);
}

QByteArray ArchiveJson::encode(const QJsonValue &value, const KeyLess &keyLess)
{
    QByteArray out;
    appendValue(out, value, 0, keyLess);
    return out;
}

// Unescaped runs are copied whole; base64 and prose have few characters to escape.
void ArchiveJson::appendUtf8String(QByteArray &out, QByteArrayView utf8)
{
    out.append('"');
    const char *run = utf8.data();
    const char *const end = run + utf8.size();
    const char *p = run;
    while (p != end) {
        if (end - p >= 8) {
            quint64 word;
            std::memcpy(&word, p, 8);
            if (isPlainWord(word)) {
                p += 8;
                continue;
            }
        }
        const auto c = static_cast<unsigned char>(*p);
        if (needsEscape(c)) {
            out.append(run, p - run);
            appendEscape(out, c);
            run = p + 1;
        }
        ++p;
    }
    out.append(run, end - run);
    out.append('"');
}

void ArchiveJson::appendString(QByteArray &out, QStringView text)
{
    appendUtf8String(out, text.toUtf8());
}

// Formatted and parsed by hand: a backup holds three dates per poem, and the generic
// format parser would dominate reading a large archive.
QString ArchiveJson::dateText(const QDateTime &date)
{
    const QDateTime utc = date.toUTC();
    const QDate day = utc.date();
    const QTime time = utc.time();
    if (day.year() < 0 || day.year() > 9999)
        return utc.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + QLatin1Char('Z');
    char text[21];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", day.year(), day.month(), day.day(), time.hour(),
                  time.minute(), time.second());
    return QString::fromLatin1(text, 20);
}

std::optional<QDateTime> ArchiveJson::parseDate(QStringView text)
{
    static constexpr char pattern[] = "dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != 20)
        return std::nullopt;
    for (int i = 0; i < 20; ++i) {
        const char16_t c = text[i].unicode();
        const bool fits = pattern[i] == 'd' ? (c >= u'0' && c <= u'9') : c == char16_t(pattern[i]);
        if (!fits)
            return std::nullopt;
    }
    const auto number = [&text](int from, int length) {
        int value = 0;
        for (int i = from; i < from + length; ++i)
            value = value * 10 + (text[i].unicode() - u'0');
        return value;
    };
    const QDate day(number(0, 4), number(5, 2), number(8, 2));
    const int hour = number(11, 2);
    const int minute = number(14, 2);
    const int second = number(17, 2);
    if (!day.isValid() || !QTime::isValid(hour, minute, second))
        return std::nullopt;
    // Built in UTC directly: a local-time detour would reject hours that daylight saving skips.
    return QDateTime(day, QTime(hour, minute, second), Qt::UTC);
}
