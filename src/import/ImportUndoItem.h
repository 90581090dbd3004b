#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

// A poem's body as it was before an import changed it.
struct ImportUndoItem {
    QUuid id;
    QString title;
    std::optional<QString> previousText;
    std::optional<QByteArray> previousRichTextData;

    bool operator==(const ImportUndoItem &other) const = default;

    QJsonObject toJson() const;
    static std::optional<ImportUndoItem> fromJson(const QJsonObject &object);
};
