#include "app/UpdateFeed.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

QVersionNumber versionIn(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("\\d+(\\.\\d+)*"));
    const QRegularExpressionMatch match = pattern.match(text);
    return match.hasMatch() ? QVersionNumber::fromString(match.captured()) : QVersionNumber();
}

struct ItemFields {
    QString title;
    QString link;
    QString notes;
    QString version;
    QString shortVersion;
    QString enclosureUrl;
    QString enclosureVersion;
    QString enclosureShortVersion;

    std::optional<UpdateRelease> release() const
    {
        const QString versionText = !version.isEmpty() ? version : enclosureVersion;
        const QString shortText = !shortVersion.isEmpty() ? shortVersion : enclosureShortVersion;
        UpdateRelease result;
        result.version = versionIn(!versionText.isEmpty() ? versionText : !shortText.isEmpty() ? shortText : title);
        if (result.version.isNull())
            return std::nullopt;
        result.displayVersion = !shortText.isEmpty() ? shortText : result.version.toString();
        result.title = title;
        result.downloadUrl = QUrl(!enclosureUrl.isEmpty() ? enclosureUrl : link);
        result.notes = notes;
        return result;
    }
};

ItemFields readItem(QXmlStreamReader &xml)
{
    ItemFields fields;
    while (xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (name == QLatin1String("enclosure")) {
            const QXmlStreamAttributes attributes = xml.attributes();
            for (const QXmlStreamAttribute &attribute : attributes) {
                if (attribute.name() == QLatin1String("url"))
                    fields.enclosureUrl = attribute.value().trimmed().toString();
                else if (attribute.name() == QLatin1String("version"))
                    fields.enclosureVersion = attribute.value().trimmed().toString();
                else if (attribute.name() == QLatin1String("shortVersionString"))
                    fields.enclosureShortVersion = attribute.value().trimmed().toString();
            }
            xml.skipCurrentElement();
        } else if (name == QLatin1String("title")) {
            fields.title = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (name == QLatin1String("link")) {
            fields.link = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (name == QLatin1String("description")) {
            fields.notes = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (name == QLatin1String("version")) {
            fields.version = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (name == QLatin1String("shortVersionString")) {
            fields.shortVersion = xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else {
            xml.skipCurrentElement();
        }
    }
    return fields;
}

} // namespace

Result<QList<UpdateRelease>> UpdateFeed::parse(const QByteArray &document)
{
    QXmlStreamReader xml(document);
    QList<UpdateRelease> releases;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("item")) {
            if (const auto release = readItem(xml).release())
                releases.append(*release);
        }
    }
    if (xml.hasError())
        return Error{tr("Der Update-Feed ist fehlerhaft: %1").arg(xml.errorString())};
    return releases;
}

Result<UpdateRelease> UpdateFeed::newestRelease(const QByteArray &document)
{
    auto releases = parse(document);
    if (!releases)
        return releases.error();
    if (releases->isEmpty())
        return Error{tr("Der Update-Feed nennt keine Version.")};
    return *std::max_element(releases->begin(), releases->end(),
                             [](const UpdateRelease &a, const UpdateRelease &b) { return a.version < b.version; });
}
