#include "import/ImportUndoItem.h"

#include "archive/PoemValues.h"

namespace {

const QString idKey = QStringLiteral("id");
const QString titleKey = QStringLiteral("title");
const QString previousTextKey = QStringLiteral("previousText");
const QString previousRichTextDataKey = QStringLiteral("previousRichTextData");

} // namespace

QJsonObject ImportUndoItem::toJson() const
{
    QJsonObject object{{idKey, uuidText(id)}, {titleKey, title}};
    if (previousText)
        object.insert(previousTextKey, *previousText);
    if (previousRichTextData)
        object.insert(previousRichTextDataKey, QString::fromLatin1(previousRichTextData->toBase64()));
    return object;
}

std::optional<ImportUndoItem> ImportUndoItem::fromJson(const QJsonObject &object)
{
    const QUuid id = QUuid::fromString(object.value(idKey).toString());
    if (id.isNull() || !object.value(titleKey).isString())
        return std::nullopt;
    ImportUndoItem item{id, object.value(titleKey).toString(), std::nullopt, std::nullopt};
    if (object.contains(previousTextKey)) {
        if (!object.value(previousTextKey).isString())
            return std::nullopt;
        item.previousText = object.value(previousTextKey).toString();
    }
    if (object.contains(previousRichTextDataKey)) {
        const auto decoded = QByteArray::fromBase64Encoding(object.value(previousRichTextDataKey).toString().toLatin1(),
                                                            QByteArray::AbortOnBase64DecodingErrors);
        if (!object.value(previousRichTextDataKey).isString() || !decoded)
            return std::nullopt;
        item.previousRichTextData = *decoded;
    }
    return item;
}
