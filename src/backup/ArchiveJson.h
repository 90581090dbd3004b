#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonValue>

#include <optional>

// The one JSON encoding of every document the program writes: pretty-printed, keys of
// every object in code-point order, "/" escaped, UTF-8 without a byte-order mark.
// Dates are ISO-8601 strings in whole seconds with "Z"; bytes are standard base64.
class ArchiveJson {
public:
    static QByteArray encode(const QJsonValue &value);

    static QString dateText(const QDateTime &date);
    // Only the strict form "yyyy-MM-ddTHH:mm:ssZ" is accepted.
    static std::optional<QDateTime> parseDate(const QString &text);
};
