#include "AnalysisTestArchive.h"

#include "analysis/StatisticsPdfWriter.h"
#include "analysis/StatisticsReport.h"

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <poppler-qt6.h>

namespace {

const QDateTime createdAt(QDate(2026, 11, 22), QTime(14, 5, 9, 700), Qt::UTC);

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

PoemStatisticSnapshot snapshot(const QString &category, bool hasText, bool hasDate, bool published = false,
                               bool podcast = false)
{
    PoemStatisticSnapshot poem;
    poem.category = category;
    poem.hasText = hasText;
    poem.hasDate = hasDate;
    poem.isPublished = published;
    poem.inPodcast = podcast;
    return poem;
}

// The keys of the document's objects at one depth, in the order they are written.
QStringList keysInFileOrder(const QByteArray &document, int indent)
{
    QStringList keys;
    const QByteArray prefix = QByteArray(indent, ' ') + '"';
    for (const QByteArray &line : document.split('\n')) {
        if (line.startsWith(prefix))
            keys.append(QString::fromUtf8(line.mid(prefix.size(), line.indexOf('"', prefix.size()) - prefix.size())));
    }
    return keys;
}

} // namespace

class StatisticsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void emptyArchiveCountsNothingAndHasNothingToDo()
    {
        const StatisticsReport report = StatisticsReport::make(QList<PoemPtr>{}, createdAt);
        QCOMPARE(report.totalPoems(), 0);
        QCOMPARE(report.counts.withTextPercent(), 0.0);
        QCOMPARE(report.counts.publishedPercent(), 0.0);
        QCOMPARE(report.openTasksCount(), 0);
        QCOMPARE(report.attentionSummary(), QStringLiteral("Alle Gedichte haben Text und Datum."));
        QVERIFY(!report.lastUpdated);
        const QJsonObject json = QJsonDocument::fromJson(report.jsonDocument()).object();
        QVERIFY(!json.contains(QStringLiteral("zuletztGeändert")));
        QCOMPARE(json.value(QStringLiteral("mitTextProzent")).toDouble(-1), 0.0);
        QCOMPARE(json.value(QStringLiteral("kategorien")).toArray().size(), 0);
        QVERIFY(report.textLines().contains(QStringLiteral("Alles vollständig: Alle Gedichte haben Text und Datum.")));
    }

    void attentionSummaryNamesOnlyWhatIsOpen()
    {
        QList<PoemStatisticSnapshot> poems(3, snapshot(QString(), false, true));
        StatisticsReport report = StatisticsReport::make(poems, createdAt);
        QCOMPARE(report.attentionSummary(), QStringLiteral("3 ohne Text"));
        QCOMPARE(
            QJsonDocument::fromJson(report.jsonDocument()).object().value(QStringLiteral("offeneAufgaben")).toInt(), 3);
        poems.append(snapshot(QString(), true, false));
        report = StatisticsReport::make(poems, createdAt);
        QCOMPARE(report.attentionSummary(), QStringLiteral("3 ohne Text, 1 ohne Datum"));
        QCOMPARE(report.openTasksCount(), 4);
        poems = {snapshot(QString(), true, false)};
        QCOMPARE(StatisticsReport::make(poems, createdAt).attentionSummary(), QStringLiteral("1 ohne Datum"));
    }

    void sharesAreFractionsShownAsGermanPercentages()
    {
        const QList<PoemStatisticSnapshot> poems = {snapshot(QString(), true, true, true),
                                                    snapshot(QString(), true, true), snapshot(QString(), true, true)};
        const StatisticsReport report = StatisticsReport::make(poems, createdAt);
        QCOMPARE(report.counts.publishedPercent(), 1.0 / 3.0);
        QCOMPARE(report.unpublished(), 2);
        QCOMPARE(report.notInPodcast(), 3);
        const QByteArray json = report.jsonDocument();
        QVERIFY(json.contains("\"veröffentlichtProzent\" : 0.3333333333333333,"));
        QCOMPARE(StatisticsReport::percentText(1.0 / 3.0), QStringLiteral("33,3\u00A0%"));
        QCOMPARE(StatisticsReport::percentText(3.0 / 7.0), QStringLiteral("42,9\u00A0%"));
        QCOMPARE(StatisticsReport::percentText(1.0), QStringLiteral("100\u00A0%"));
        QCOMPARE(StatisticsReport::percentText(0.0), QStringLiteral("0\u00A0%"));
        QCOMPARE(StatisticsReport::percentText(0.5), QStringLiteral("50\u00A0%"));
        QVERIFY(report.textLines().contains(QStringLiteral("Veröffentlicht: 1 (33,3\u00A0%)")));
    }

    void categoriesMostPoemsFirstThenByName()
    {
        const QList<PoemStatisticSnapshot> poems = {snapshot(QStringLiteral("Zyklus 10"), true, true),
                                                    snapshot(QStringLiteral("zyklus 2"), true, false),
                                                    snapshot(QString(), false, true),
                                                    snapshot(QStringLiteral("Liebe"), true, true),
                                                    snapshot(QStringLiteral("Liebe"), false, false),
                                                    snapshot(QStringLiteral("Liebe"), true, true, true)};
        const StatisticsReport report = StatisticsReport::make(poems, createdAt);
        QStringList names;
        for (const CategoryStatistic &category : report.categories)
            names.append(category.displayName());
        QCOMPARE(names, (QStringList{"Liebe", "Ohne Kategorie", "zyklus 2", "Zyklus 10"}));
        const CategoryStatistic &liebe = report.categories[0];
        QCOMPARE(liebe.count(), 3);
        QCOMPARE(liebe.counts.withoutText, 1);
        QCOMPARE(liebe.counts.publishedPercent(), 1.0 / 3.0);
        QCOMPARE(report.categoryLine(liebe), QStringLiteral("Liebe: 3 gesamt, 2 mit Text, 1 ohne Text, 1 ohne Datum"));
    }

    void snapshotsOfPoemsSkipTheTrashAndTrimTheCategory()
    {
        AnalysisTestArchive archive;
        archive.add(QStringLiteral("A"))->setCategory(QStringLiteral(" Liebe \n"));
        const PoemPtr b = archive.add(QStringLiteral("B"), QStringLiteral(" \n"));
        b->setCategory(QStringLiteral("Liebe"));
        b->setUpdatedAt(createdAt.addDays(-1));
        const PoemPtr trashed = archive.add(QStringLiteral("C"));
        trashed->setUpdatedAt(createdAt);
        trashed->setDeletedAt(createdAt);
        const StatisticsReport report = StatisticsReport::make(archive.poems(), createdAt);
        QCOMPARE(report.totalPoems(), 2);
        QCOMPARE(report.categories.size(), 1);
        QCOMPARE(report.categories[0].name, QStringLiteral("Liebe"));
        QCOMPARE(report.counts.withoutText, 1);
        QCOMPARE(report.lastUpdated, std::optional<QDateTime>(createdAt.addDays(-1)));
    }

    void jsonFileMatchesTheGoldenDocumentKeyForKey()
    {
        QList<PoemStatisticSnapshot> poems = {snapshot(QStringLiteral("Liebe"), true, true, true, true),
                                              snapshot(QStringLiteral("Liebe"), true, false),
                                              snapshot(QString(), false, true),
                                              snapshot(QStringLiteral("Natur"), true, true, true),
                                              snapshot(QStringLiteral("Natur"), false, false, false, true),
                                              snapshot(QStringLiteral("Liebe"), true, true),
                                              snapshot(QStringLiteral("Ährenfeld"), true, true)};
        poems[1].updatedAt = QDateTime(QDate(2026, 11, 20), QTime(8, 30, 0, 500), Qt::UTC);
        poems[3].updatedAt = QDateTime(QDate(2026, 11, 21), QTime(21, 15, 42), Qt::UTC);
        const QByteArray document = StatisticsReport::make(poems, createdAt).jsonDocument();
        QCOMPARE(document, fileBytes(QStringLiteral(ODELEAF_TEST_DATA "/analysis/golden-statistics.json")));

        QCOMPARE(
            keysInFileOrder(document, 2),
            (QStringList{
                "erstelltAm",     "gedichteGesamt",      "mitText",         "ohneText",         "mitDatum",
                "ohneDatum",      "veröffentlicht",      "podcast",         "kategorien",       "zuletztGeändert",
                "mitTextProzent", "ohneTextProzent",     "mitDatumProzent", "ohneDatumProzent", "veröffentlichtProzent",
                "podcastProzent", "nichtVeröffentlicht", "nichtPodcast",    "offeneAufgaben",   "zusammenfassung"}));
        QCOMPARE(keysInFileOrder(document, 6).mid(0, 14),
                 (QStringList{"name", "gesamt", "mitText", "ohneText", "mitDatum", "ohneDatum", "veröffentlicht",
                              "podcast", "mitTextProzent", "ohneTextProzent", "mitDatumProzent", "ohneDatumProzent",
                              "veröffentlichtProzent", "podcastProzent"}));
    }

    void datesReadAsGermanMediumDateAndShortTime()
    {
        // The tests run in Europe/Berlin.
        QCOMPARE(StatisticsReport::dateTimeText(createdAt), QStringLiteral("22.11.2026, 15:05"));
        QCOMPARE(StatisticsReport::proposedPdfFileName(createdAt), QStringLiteral("OdeLeaf-Statistik-2026-11-22.pdf"));
    }

    void pdfHasTitleBodyAndA4PagesAsNeeded()
    {
        QList<PoemStatisticSnapshot> poems;
        for (int i = 0; i < 120; ++i)
            poems.append(snapshot(QStringLiteral("Zyklus %1").arg(i), i % 2 == 0, i % 3 == 0));
        const StatisticsReport report = StatisticsReport::make(poems, createdAt);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("statistik.pdf"));
        QImage logo(220, 72, QImage::Format_ARGB32);
        logo.fill(Qt::darkGreen);
        QVERIFY(report.savePdf(path, logo));

        const std::unique_ptr<Poppler::Document> pdf = Poppler::Document::load(path);
        QVERIFY(pdf && !pdf->isLocked());
        QVERIFY2(pdf->numPages() >= 3, qPrintable(QString::number(pdf->numPages())));
        QCOMPARE(pdf->info(QStringLiteral("Title")), QStringLiteral("OdeLeaf Statistik"));
        const QSizeF size = pdf->page(0)->pageSizeF();
        QVERIFY(qAbs(size.width() - 595.2) < 0.5 && qAbs(size.height() - 841.8) < 0.5);
        const QString first = pdf->page(0)->text(QRectF());
        QVERIFY(first.contains(QStringLiteral("OdeLeaf Statistik")));
        QVERIFY(first.contains(QStringLiteral("Gedichte gesamt: 120")));
        const QString last = pdf->page(pdf->numPages() - 1)->text(QRectF());
        QVERIFY2(last.contains(QStringLiteral("Zyklus 119: 1 gesamt")), qPrintable(last.right(200)));
        // Nothing of the body runs into the bottom margin, where the logo sits.
        for (int page = 0; page < pdf->numPages(); ++page) {
            for (const auto &box : pdf->page(page)->textList())
                QVERIFY2(box->boundingBox().bottom() <= StatisticsPdfWriter::textRect().bottom() + 1,
                         qPrintable(QStringLiteral("%1 on page %2 ends at %3")
                                        .arg(box->text())
                                        .arg(page + 1)
                                        .arg(box->boundingBox().bottom())));
        }
    }

    void unwritableDestinationsFailWithoutAFile()
    {
        const StatisticsReport report = StatisticsReport::make(QList<PoemPtr>{}, createdAt);
        const QString path = QStringLiteral("/proc/odeleaf-statistik/x.json");
        const auto saved = report.saveJson(path);
        QVERIFY(!saved);
        QVERIFY(!saved.errorMessage().isEmpty());
        QVERIFY(!QFile::exists(path));
        QVERIFY(!report.savePdf(QStringLiteral("/proc/odeleaf-statistik/x.pdf")));
    }
};

QTEST_MAIN(StatisticsTest)
#include "tst_statistics.moc"
