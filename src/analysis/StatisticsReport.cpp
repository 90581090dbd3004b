#include "analysis/StatisticsReport.h"

#include "analysis/StatisticsPdfWriter.h"
#include "archive/AtomicFileWriter.h"
#include "archive/TextComparison.h"
#include "backup/ArchiveJson.h"

#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QJsonArray>
#include <QLocale>

#include <unicode/datefmt.h>
#include <unicode/numfmt.h>

#include <algorithm>
#include <memory>

namespace {

// Both key tables of the file in one order: the top level's and the categories'.
const QStringList &documentKeyOrder()
{
    static const QStringList order = {
        QStringLiteral("name"),
        QStringLiteral("erstelltAm"),
        QStringLiteral("gedichteGesamt"),
        QStringLiteral("gesamt"),
        QStringLiteral("mitText"),
        QStringLiteral("ohneText"),
        QStringLiteral("mitDatum"),
        QStringLiteral("ohneDatum"),
        QStringLiteral("veröffentlicht"),
        QStringLiteral("podcast"),
        QStringLiteral("kategorien"),
        QStringLiteral("zuletztGeändert"),
        QStringLiteral("mitTextProzent"),
        QStringLiteral("ohneTextProzent"),
        QStringLiteral("mitDatumProzent"),
        QStringLiteral("ohneDatumProzent"),
        QStringLiteral("veröffentlichtProzent"),
        QStringLiteral("podcastProzent"),
        QStringLiteral("nichtVeröffentlicht"),
        QStringLiteral("nichtPodcast"),
        QStringLiteral("offeneAufgaben"),
        QStringLiteral("zusammenfassung"),
    };
    return order;
}

bool documentKeyLess(const QString &a, const QString &b)
{
    const QStringList &order = documentKeyOrder();
    return order.indexOf(a) < order.indexOf(b);
}

void insertCounts(QJsonObject &object, const StatisticCounts &counts)
{
    object.insert(QStringLiteral("mitText"), counts.withText);
    object.insert(QStringLiteral("ohneText"), counts.withoutText);
    object.insert(QStringLiteral("mitDatum"), counts.withDate);
    object.insert(QStringLiteral("ohneDatum"), counts.withoutDate);
    object.insert(QStringLiteral("veröffentlicht"), counts.published);
    object.insert(QStringLiteral("podcast"), counts.podcast);
    object.insert(QStringLiteral("mitTextProzent"), counts.withTextPercent());
    object.insert(QStringLiteral("ohneTextProzent"), counts.withoutTextPercent());
    object.insert(QStringLiteral("mitDatumProzent"), counts.withDatePercent());
    object.insert(QStringLiteral("ohneDatumProzent"), counts.withoutDatePercent());
    object.insert(QStringLiteral("veröffentlichtProzent"), counts.publishedPercent());
    object.insert(QStringLiteral("podcastProzent"), counts.podcastPercent());
}

QString fromIcu(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

// de_DE, or the interface's English: the figures read in the language around them.
icu::Locale displayLocale()
{
    const QLocale shown;
    if (shown.language() != QLocale::English)
        return icu::Locale("de", "DE");
    return icu::Locale("en", QLocale::territoryToCode(shown.territory()).toLatin1().constData());
}

} // namespace

StatisticsReport StatisticsReport::make(const QList<PoemPtr> &poems, const QDateTime &now)
{
    QList<PoemStatisticSnapshot> snapshots;
    snapshots.reserve(poems.size());
    for (const PoemPtr &poem : poems) {
        if (poem && !poem->isInTrash())
            snapshots.append(PoemStatisticSnapshot(*poem));
    }
    return make(snapshots, now);
}

StatisticsReport StatisticsReport::make(const QList<PoemStatisticSnapshot> &snapshots, const QDateTime &now)
{
    StatisticsReport report;
    report.createdAt = now;
    QHash<QString, qsizetype> indexOfCategory;
    for (const PoemStatisticSnapshot &poem : snapshots) {
        report.counts.add(poem);
        auto found = indexOfCategory.find(poem.category);
        if (found == indexOfCategory.end()) {
            found = indexOfCategory.insert(poem.category, report.categories.size());
            report.categories.append({poem.category, {}});
        }
        report.categories[*found].counts.add(poem);
        if (poem.updatedAt && (!report.lastUpdated || *poem.updatedAt > *report.lastUpdated))
            report.lastUpdated = poem.updatedAt;
    }
    std::stable_sort(report.categories.begin(), report.categories.end(),
                     [](const CategoryStatistic &a, const CategoryStatistic &b) {
                         if (a.count() != b.count())
                             return a.count() > b.count();
                         return TextComparison::localizedStandardCompare(a.displayName(), b.displayName()) < 0;
                     });
    return report;
}

QString StatisticsReport::attentionSummary() const
{
    if (openTasksCount() == 0)
        return tr("Alle Gedichte haben Text und Datum.");
    QStringList parts;
    if (counts.withoutText >= 1)
        parts.append(tr("%1 ohne Text").arg(counts.withoutText));
    if (counts.withoutDate >= 1)
        parts.append(tr("%1 ohne Datum").arg(counts.withoutDate));
    return parts.join(QStringLiteral(", "));
}

QJsonObject StatisticsReport::toJson() const
{
    QJsonArray categoryObjects;
    for (const CategoryStatistic &category : categories) {
        QJsonObject object{{QStringLiteral("name"), category.displayName()},
                           {QStringLiteral("gesamt"), category.count()}};
        insertCounts(object, category.counts);
        categoryObjects.append(object);
    }
    QJsonObject object{
        {QStringLiteral("erstelltAm"), ArchiveJson::dateText(createdAt)},
        {QStringLiteral("gedichteGesamt"), totalPoems()},
        {QStringLiteral("kategorien"), categoryObjects},
        {QStringLiteral("nichtVeröffentlicht"), unpublished()},
        {QStringLiteral("nichtPodcast"), notInPodcast()},
        {QStringLiteral("offeneAufgaben"), openTasksCount()},
        {QStringLiteral("zusammenfassung"), attentionSummary()},
    };
    insertCounts(object, counts);
    if (lastUpdated)
        object.insert(QStringLiteral("zuletztGeändert"), ArchiveJson::dateText(*lastUpdated));
    return object;
}

QByteArray StatisticsReport::jsonDocument() const
{
    return ArchiveJson::encode(toJson(), documentKeyLess);
}

QStringList StatisticsReport::textLines() const
{
    const auto counted = [](int count, double share) {
        return QStringLiteral("%1 (%2)").arg(count).arg(percentText(share));
    };
    QStringList lines = {
        tr("Erstellt: %1").arg(dateTimeText(createdAt)),
        tr("Gedichte gesamt: %1").arg(totalPoems()),
        tr("Mit Text: %1").arg(counted(counts.withText, counts.withTextPercent())),
        tr("Ohne Text: %1").arg(counted(counts.withoutText, counts.withoutTextPercent())),
        tr("Mit Datum: %1").arg(counted(counts.withDate, counts.withDatePercent())),
        tr("Ohne Datum: %1").arg(counted(counts.withoutDate, counts.withoutDatePercent())),
        tr("Veröffentlicht: %1").arg(counted(counts.published, counts.publishedPercent())),
        tr("Nicht veröffentlicht: %1").arg(unpublished()),
        tr("Im Podcast: %1").arg(counted(counts.podcast, counts.podcastPercent())),
        tr("Nicht im Podcast: %1").arg(notInPodcast()),
    };
    if (lastUpdated)
        lines.append(tr("Zuletzt geändert: %1").arg(dateTimeText(*lastUpdated)));
    lines.append(QString());
    lines.append((openTasksCount() == 0 ? completeHeading() : openTasksHeading()) + QStringLiteral(": ") +
                 attentionSummary());
    if (!categories.isEmpty()) {
        lines.append(QString());
        lines.append(tr("Kategorien"));
        for (const CategoryStatistic &category : categories)
            lines.append(categoryLine(category));
    }
    return lines;
}

QString StatisticsReport::categoryLine(const CategoryStatistic &category) const
{
    return tr("%1: %2 gesamt, %3 mit Text, %4 ohne Text, %5 ohne Datum")
        .arg(category.displayName())
        .arg(category.count())
        .arg(category.counts.withText)
        .arg(category.counts.withoutText)
        .arg(category.counts.withoutDate);
}

QString StatisticsReport::percentText(double fraction)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createPercentInstance(displayLocale(), status));
    if (U_FAILURE(status) || !format)
        return QLocale().toString(fraction * 100, 'f', 1) + QStringLiteral("\u00A0%");
    format->setMinimumFractionDigits(0);
    format->setMaximumFractionDigits(1);
    icu::UnicodeString text;
    format->format(fraction, text);
    return fromIcu(text);
}

QString StatisticsReport::dateTimeText(const QDateTime &dateTime)
{
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort, displayLocale()));
    if (!format)
        return QLocale().toString(dateTime.toLocalTime(), QLocale::ShortFormat);
    icu::UnicodeString text;
    format->format(UDate(dateTime.toMSecsSinceEpoch()), text);
    return fromIcu(text);
}

QString StatisticsReport::pdfTitle()
{
    return tr("OdeLeaf Statistik");
}

QString StatisticsReport::proposedPdfFileName(const QDateTime &now)
{
    return QStringLiteral("OdeLeaf-Statistik-") + now.toLocalTime().toString(QStringLiteral("yyyy-MM-dd")) +
           QStringLiteral(".pdf");
}

QString StatisticsReport::proposedJsonFileName(const QDateTime &now)
{
    return QStringLiteral("OdeLeaf-Statistik-") + now.toLocalTime().toString(QStringLiteral("yyyy-MM-dd")) +
           QStringLiteral(".json");
}

QString StatisticsReport::openTasksHeading()
{
    return tr("Noch zu erledigen");
}

QString StatisticsReport::completeHeading()
{
    return tr("Alles vollständig");
}

QString StatisticsReport::jsonSaved(const QString &path)
{
    return tr("Statistik gespeichert: %1").arg(QFileInfo(path).fileName());
}

QString StatisticsReport::jsonFailed(const QString &reason)
{
    return tr("Statistik konnte nicht gespeichert werden: %1").arg(reason);
}

QString StatisticsReport::pdfSaved(const QString &path)
{
    return tr("Statistik-PDF gespeichert: %1").arg(QFileInfo(path).fileName());
}

QString StatisticsReport::pdfFailed(const QString &reason)
{
    return tr("Statistik-PDF konnte nicht gespeichert werden: %1").arg(reason);
}

Result<void> StatisticsReport::saveJson(const QString &path) const
{
    return AtomicFileWriter::write(path, jsonDocument());
}

Result<void> StatisticsReport::savePdf(const QString &path, const QImage &logo) const
{
    return StatisticsPdfWriter::write(path, pdfTitle(), pdfBody(), logo);
}
