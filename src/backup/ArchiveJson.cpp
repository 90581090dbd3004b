#include "backup/ArchiveJson.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace {

void appendString(QByteArray &out, const QString &text)
{
    out.append('"');
    const QByteArray utf8 = text.toUtf8();
    for (const char ch : utf8) {
        const auto c = static_cast<unsigned char>(ch);
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
        default:
            if (c < 0x20) {
                static const char hex[] = "0123456789abcdef";
                out.append("\\u00");
                out.append(hex[c >> 4]);
                out.append(hex[c & 0xF]);
            } else {
                out.append(ch);
            }
        }
    }
    out.append('"');
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

void appendValue(QByteArray &out, const QJsonValue &value, int depth)
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
        appendString(out, value.toString());
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
            appendValue(out, array.at(i), depth + 1);
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
        std::sort(keys.begin(), keys.end(), codePointLess);
        out.append("{\n");
        for (qsizetype i = 0; i < keys.size(); ++i) {
            out.append(indent);
            appendString(out, keys.at(i));
            out.append(" : ");
            appendValue(out, object.value(keys.at(i)), depth + 1);
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
    QByteArray out;
    appendValue(out, value, 0);
    return out;
}

QString ArchiveJson::dateText(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + QLatin1Char('Z');
}

std::optional<QDateTime> ArchiveJson::parseDate(const QString &text)
{
    static const QRegularExpression strictForm(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}T\\d{2}:\\d{2}:\\d{2}Z$"));
    if (!strictForm.match(text).hasMatch())
        return std::nullopt;
    // Parsed in parts: a local-time parse would reject hours that daylight saving skips.
    const QDate day = QDate::fromString(text.left(10), QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime::fromString(text.mid(11, 8), QStringLiteral("HH:mm:ss"));
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, Qt::UTC);
}
