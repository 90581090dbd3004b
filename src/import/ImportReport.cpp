#include "import/ImportReport.h"

#include "backup/ArchiveJson.h"

#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

namespace {

const QString createdAtKey = QStringLiteral("createdAt");
const QString titleKey = QStringLiteral("title");
const QString summaryKey = QStringLiteral("summary");
const QString itemsKey = QStringLiteral("items");
const QString statusKey = QStringLiteral("status");
const QString fileNameKey = QStringLiteral("fileName");
const QString poemTitleKey = QStringLiteral("poemTitle");
const QString reasonKey = QStringLiteral("reason");
const QString cancelledKey = QStringLiteral("cancelled");

} // namespace

QString ImportReport::headline() const
{
    if (cancelled)
        return tr("Import abgebrochen");
    const bool clean =
        std::all_of(items.begin(), items.end(), [](const Item &item) { return item.status == Status::imported; });
    return clean ? tr("Import abgeschlossen") : tr("Import mit Hinweisen abgeschlossen");
}

QString ImportReport::checkedFilesText() const
{
    if (items.size() == 1)
        return tr("1 Datei geprüft");
    return tr("%1 Dateien geprüft").arg(items.size());
}

QString ImportReport::rawValue(Status status)
{
    // The stored values are the German display titles; they never change with the language.
    switch (status) {
    case Status::imported:
        return QStringLiteral("Übernommen");
    case Status::skipped:
        return QStringLiteral("Übersprungen");
    case Status::failed:
        return QStringLiteral("Fehlgeschlagen");
    }
    return {};
}

std::optional<ImportReport::Status> ImportReport::statusFromRaw(const QString &raw)
{
    for (const Status status : {Status::imported, Status::skipped, Status::failed}) {
        if (rawValue(status) == raw)
            return status;
    }
    return std::nullopt;
}

QString ImportReport::displayTitle(Status status)
{
    switch (status) {
    case Status::imported:
        return tr("Übernommen");
    case Status::skipped:
        return tr("Übersprungen");
    case Status::failed:
        return tr("Fehlgeschlagen");
    }
    return {};
}

QString ImportReport::textImportTitle()
{
    return QString::fromUtf8(QT_TR_NOOP("Letzter Textimport"));
}

QString ImportReport::imageImportTitle()
{
    return QString::fromUtf8(QT_TR_NOOP("Letzter Bildimport"));
}

QString ImportReport::displayedTitle() const
{
    return tr(title.toUtf8().constData());
}

QString ImportReport::displayedReason(const QString &storedReason)
{
    // The one reason with a value; a text that is no key (an older report) shows as it is.
    static const QRegularExpression timeout(QStringLiteral("^Timeout nach (\\d+)s$"));
    if (const QRegularExpressionMatch match = timeout.match(storedReason); match.hasMatch())
        return QCoreApplication::translate("ImportRun", "Timeout nach %1s").arg(match.captured(1));
    return QCoreApplication::translate("ImportRun", storedReason.toUtf8().constData());
}

QJsonObject ImportReport::toJson() const
{
    QJsonArray itemArray;
    for (const Item &item : items) {
        QJsonObject object{
            {statusKey, rawValue(item.status)}, {fileNameKey, item.fileName}, {poemTitleKey, item.poemTitle}};
        if (item.reason)
            object.insert(reasonKey, *item.reason);
        itemArray.append(object);
    }
    QJsonObject object{{createdAtKey, ArchiveJson::dateText(createdAt)},
                       {titleKey, title},
                       {summaryKey, summary},
                       {itemsKey, itemArray}};
    // Left out when false, so a finished run's file keeps its four keys.
    if (cancelled)
        object.insert(cancelledKey, true);
    return object;
}

std::optional<ImportReport> ImportReport::fromJson(const QJsonObject &object)
{
    const auto createdAt = ArchiveJson::parseDate(object.value(createdAtKey).toString());
    if (!createdAt || !object.value(titleKey).isString() || !object.value(summaryKey).isString() ||
        !object.value(itemsKey).isArray())
        return std::nullopt;
    ImportReport report;
    report.createdAt = *createdAt;
    report.title = object.value(titleKey).toString();
    report.summary = object.value(summaryKey).toString();
    report.cancelled = object.value(cancelledKey).toBool(false);
    for (const QJsonValue value : object.value(itemsKey).toArray()) {
        const QJsonObject entry = value.toObject();
        const auto status = statusFromRaw(entry.value(statusKey).toString());
        if (!status || !entry.value(fileNameKey).isString() || !entry.value(poemTitleKey).isString())
            return std::nullopt;
        Item item{*status, entry.value(fileNameKey).toString(), entry.value(poemTitleKey).toString(), std::nullopt};
        if (entry.contains(reasonKey)) {
            if (!entry.value(reasonKey).isString())
                return std::nullopt;
            item.reason = entry.value(reasonKey).toString();
        }
        report.items.append(std::move(item));
    }
    return report;
}
