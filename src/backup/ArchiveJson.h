#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDateTime>
#include <QJsonValue>
#include <QStringView>

#include <functional>
#include <optional>

// The one JSON encoding of every document the program writes: pretty-printed, keys of
// every object in code-point order, "/" escaped, UTF-8 without a byte-order mark.
// Dates are ISO-8601 strings in whole seconds with "Z"; bytes are standard base64.
class ArchiveJson {
public:
    static QByteArray encode(const QJsonValue &value);
    // The same encoding with the keys of every object in the given order, for documents
    // whose readers expect their keys as a table lists them.
    using KeyLess = std::function<bool(const QString &, const QString &)>;
    static QByteArray encode(const QJsonValue &value, const KeyLess &keyLess);

    // The string escaping of encode(), for writers that stream a document themselves.
    static void appendString(QByteArray &out, QStringView text);
    static void appendUtf8String(QByteArray &out, QByteArrayView utf8);

    static QString dateText(const QDateTime &date);
    // Only the strict form "yyyy-MM-ddTHH:mm:ssZ" is accepted.
    static std::optional<QDateTime> parseDate(QStringView text);
};
