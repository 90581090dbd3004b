#include "export/OdeLeafReaderPackageCodec.h"

#include "backup/ArchiveJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <climits>

namespace {

void insertText(QJsonObject &object, const QString &key, const std::optional<QString> &value)
{
    if (value)
        object.insert(key, *value);
}

void insertDate(QJsonObject &object, const QString &key, const std::optional<QDateTime> &value)
{
    if (value)
        object.insert(key, ArchiveJson::dateText(*value));
}

QJsonObject poemObject(const ReaderPoem &poem)
{
    QJsonObject object{
        {QStringLiteral("id"), poem.id},
        {QStringLiteral("title"), poem.title},
        {QStringLiteral("titleNormalized"), poem.titleNormalized},
        {QStringLiteral("text"), poem.text},
        {QStringLiteral("excerpt"), poem.excerpt},
        {QStringLiteral("isPublished"), poem.isPublished},
        {QStringLiteral("inPodcast"), poem.inPodcast},
    };
    insertText(object, QStringLiteral("category"), poem.category);
    insertDate(object, QStringLiteral("date"), poem.date);
    insertDate(object, QStringLiteral("createdAt"), poem.createdAt);
    insertDate(object, QStringLiteral("updatedAt"), poem.updatedAt);
    if (poem.paragraphAlignments) {
        QJsonArray runs;
        for (const ParagraphAlignment &run : *poem.paragraphAlignments) {
            runs.append(QJsonObject{{QStringLiteral("location"), run.location},
                                    {QStringLiteral("length"), run.length},
                                    {QStringLiteral("alignment"), rawValue(run.alignment)}});
        }
        object.insert(QStringLiteral("paragraphAlignments"), runs);
    }
    if (poem.richTextData)
        object.insert(QStringLiteral("richTextData"), QString::fromLatin1(poem.richTextData->toBase64()));
    return object;
}

// Reads the fields of one document; the first missing or mistyped field ends the reading.
class PackageReader {
    Q_DECLARE_TR_FUNCTIONS(OdeLeafReaderPackageCodec)

public:
    std::optional<QString> error;

    QString text(const QJsonObject &object, const QString &key)
    {
        const QJsonValue value = object.value(key);
        if (!value.isString())
            fail(key);
        return value.toString();
    }

    std::optional<QString> optionalText(const QJsonObject &object, const QString &key)
    {
        if (!object.contains(key))
            return std::nullopt;
        return text(object, key);
    }

    int integer(const QJsonObject &object, const QString &key)
    {
        const QJsonValue value = object.value(key);
        const double number = value.toDouble(-1);
        if (!value.isDouble() || number < 0 || number != double(qint64(number)) || number > INT_MAX)
            fail(key);
        return int(number);
    }

    bool flag(const QJsonObject &object, const QString &key)
    {
        const QJsonValue value = object.value(key);
        if (!value.isBool())
            fail(key);
        return value.toBool();
    }

    std::optional<QDateTime> optionalDate(const QJsonObject &object, const QString &key)
    {
        const auto raw = optionalText(object, key);
        if (!raw)
            return std::nullopt;
        const auto date = ArchiveJson::parseDate(*raw);
        if (!date)
            fail(key);
        return date;
    }

    void fail(const QString &key)
    {
        if (!error)
            error = tr("Das Feld „%1“ fehlt oder hat einen falschen Typ.").arg(key);
    }

    ReaderPoem poem(const QJsonObject &object)
    {
        ReaderPoem poem;
        poem.id = text(object, QStringLiteral("id"));
        poem.title = text(object, QStringLiteral("title"));
        poem.titleNormalized = text(object, QStringLiteral("titleNormalized"));
        poem.category = optionalText(object, QStringLiteral("category"));
        poem.date = optionalDate(object, QStringLiteral("date"));
        poem.text = text(object, QStringLiteral("text"));
        poem.excerpt = text(object, QStringLiteral("excerpt"));
        poem.isPublished = flag(object, QStringLiteral("isPublished"));
        poem.inPodcast = flag(object, QStringLiteral("inPodcast"));
        poem.createdAt = optionalDate(object, QStringLiteral("createdAt"));
        poem.updatedAt = optionalDate(object, QStringLiteral("updatedAt"));
        if (object.contains(QStringLiteral("paragraphAlignments"))) {
            QList<ParagraphAlignment> runs;
            for (const QJsonValue &entry : object.value(QStringLiteral("paragraphAlignments")).toArray()) {
                const QJsonObject run = entry.toObject();
                const auto alignment = textAlignmentFromRaw(text(run, QStringLiteral("alignment")));
                if (!alignment)
                    fail(QStringLiteral("alignment"));
                runs.append({integer(run, QStringLiteral("location")), integer(run, QStringLiteral("length")),
                             alignment.value_or(TextAlignment::natural)});
            }
            poem.paragraphAlignments = runs;
        }
        if (const auto base64 = optionalText(object, QStringLiteral("richTextData"))) {
            auto decoded = QByteArray::fromBase64Encoding(base64->toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
            if (!decoded)
                fail(QStringLiteral("richTextData"));
            poem.richTextData = *decoded;
        }
        return poem;
    }
};

} // namespace

QByteArray OdeLeafReaderPackageCodec::encode(const OdeLeafReaderPackage &package)
{
    QJsonArray poems;
    for (const ReaderPoem &poem : package.poems)
        poems.append(poemObject(poem));
    const QJsonObject document{
        {QStringLiteral("format"), package.format},
        {QStringLiteral("schemaVersion"), package.schemaVersion},
        {QStringLiteral("exportedAt"), ArchiveJson::dateText(package.exportedAt)},
        {QStringLiteral("poemCount"), package.poemCount},
        {QStringLiteral("categories"), QJsonArray::fromStringList(package.categories)},
        {QStringLiteral("poems"), poems},
    };
    return ArchiveJson::encode(document);
}

Result<OdeLeafReaderPackage> OdeLeafReaderPackageCodec::decode(const QByteArray &bytes)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject())
        return Error{tr("Die Datei ist kein Reader-Paket: %1").arg(parseError.errorString())};
    const QJsonObject root = document.object();
    PackageReader reader;
    OdeLeafReaderPackage package;
    package.format = reader.text(root, QStringLiteral("format"));
    if (!reader.error && package.format != QLatin1String(OdeLeafReaderPackage::formatName))
        return Error{tr("Die Datei ist kein Reader-Paket: %1").arg(package.format)};
    package.schemaVersion = reader.integer(root, QStringLiteral("schemaVersion"));
    package.exportedAt = reader.optionalDate(root, QStringLiteral("exportedAt")).value_or(QDateTime());
    if (!root.contains(QStringLiteral("exportedAt")))
        reader.fail(QStringLiteral("exportedAt"));
    package.poemCount = reader.integer(root, QStringLiteral("poemCount"));
    for (const QJsonValue &category : root.value(QStringLiteral("categories")).toArray())
        package.categories.append(category.toString());
    for (const QJsonValue &entry : root.value(QStringLiteral("poems")).toArray())
        package.poems.append(reader.poem(entry.toObject()));
    if (reader.error)
        return Error{*reader.error};
    return package;
}
