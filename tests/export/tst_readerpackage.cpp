#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "editor/PoemRichText.h"
#include "export/OdeLeafReaderPackageCodec.h"
#include "export/OdeLeafReaderPackageExporter.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace {

const QDateTime exportedAt(QDate(2026, 11, 22), QTime(16, 4, 31, 880), Qt::UTC);

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Paragraphs with their alignments, stored as the editor stores rich text.
QByteArray richText(const QList<std::pair<QString, Qt::Alignment>> &paragraphs)
{
    QTextDocument document;
    document.setDefaultFont(QFont(QStringLiteral("Georgia"), 14)); // the stored bytes name the font
    QTextCursor cursor(&document);
    for (qsizetype i = 0; i < paragraphs.size(); ++i) {
        if (i > 0)
            cursor.insertBlock();
        QTextBlockFormat format;
        format.setAlignment(paragraphs[i].second);
        cursor.setBlockFormat(format);
        cursor.insertText(paragraphs[i].first);
    }
    return PoemRichText::encode(document).value();
}

} // namespace

class ReaderPackageTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<PersistenceController> m_store;

    ArchiveContext &context() { return m_store->viewContext(); }

    PoemPtr add(const QString &title, const QString &titleKey, const QString &text = QStringLiteral("Text"))
    {
        PoemPtr poem = context().insertPoem();
        poem->setId(QUuid::createUuid());
        poem->setTitle(title);
        if (!titleKey.isNull())
            poem->setTitleNormalized(titleKey);
        poem->setText(text);
        return poem;
    }

private Q_SLOTS:
    void init() { m_store = PersistenceController::inMemory(); }

    void excerptIsOneLineOfAtMost180Characters()
    {
        const QString exact(180, QLatin1Char('a'));
        QCOMPARE(OdeLeafReaderPackageExporter::excerpt(exact), exact);
        const QString longer = QString(176, QLatin1Char('b')) + QStringLiteral(" cdefg");
        QCOMPARE(longer.size(), 182);
        // The cut at 177 ends in a blank, which goes before the dots.
        QCOMPARE(OdeLeafReaderPackageExporter::excerpt(longer), QString(176, QLatin1Char('b')) + QStringLiteral("..."));
        const QString plain181(181, QLatin1Char('x'));
        QCOMPARE(OdeLeafReaderPackageExporter::excerpt(plain181), QString(177, QLatin1Char('x')) + "...");
        QCOMPARE(OdeLeafReaderPackageExporter::excerpt(QStringLiteral("  Der Mond\n\n\tist  aufgegangen\r\n ")),
                 QStringLiteral("Der Mond ist aufgegangen"));
        // An emoji is one character, however many code units it takes.
        const QString leaves = QString(179, QLatin1Char('l')) + QStringLiteral("🍂");
        QCOMPARE(OdeLeafReaderPackageExporter::excerpt(leaves), leaves);
        QCOMPARE(OdeLeafReaderPackageExporter::excerpt(QString()), QString());
    }

    void cleanedOptionalDropsBlankValues()
    {
        QVERIFY(!OdeLeafReaderPackageExporter::cleanedOptional(QStringLiteral(" \n\t ")));
        QVERIFY(!OdeLeafReaderPackageExporter::cleanedOptional(std::nullopt));
        QCOMPARE(OdeLeafReaderPackageExporter::cleanedOptional(QStringLiteral(" Lyrik\n")),
                 std::optional<QString>(QStringLiteral("Lyrik")));
    }

    void packageHoldsTheActivePoemsSortedByTitleKey()
    {
        add(QStringLiteral("Zebra"), QStringLiteral("zebra"));
        add(QStringLiteral("Über Nacht"), QStringLiteral("ueber nacht"));
        add(QStringLiteral("Apfel"), QString()); // no key: sorted by its title
        add(QStringLiteral("Mond 2"), QStringLiteral("mond"));
        add(QStringLiteral("Mond 1"), QStringLiteral("mond"));
        add(QStringLiteral("Fort"), QStringLiteral("fort"))->setDeletedAt(exportedAt);
        const OdeLeafReaderPackage package = OdeLeafReaderPackageExporter::makePackage(
            context().fetch(), {QStringLiteral("Natur"), QStringLiteral("Liebe")}, exportedAt);
        QStringList titles;
        for (const ReaderPoem &poem : package.poems)
            titles.append(poem.title);
        QCOMPARE(titles, (QStringList{"Apfel", "Mond 2", "Mond 1", "Über Nacht", "Zebra"}));
        QCOMPARE(package.poemCount, 5);
        QCOMPARE(package.categories, (QStringList{"Liebe", "Natur"}));
        QCOMPARE(package.format, QStringLiteral("odeLeaf.readerPackage"));
    }

    void poemWithoutRichTextOrCategoryLeavesTheirKeysOut()
    {
        PoemPtr poem = add(QStringLiteral("Schlicht"), QStringLiteral("schlicht"));
        poem->setCategory(QStringLiteral("   "));
        const QByteArray bytes = OdeLeafReaderPackageCodec::encode(
            OdeLeafReaderPackageExporter::makePackage(context().fetch(), {}, exportedAt));
        const QJsonObject entry =
            QJsonDocument::fromJson(bytes).object().value(QStringLiteral("poems")).toArray().at(0).toObject();
        for (const char *absent : {"paragraphAlignments", "richTextData", "category", "date", "createdAt"})
            QVERIFY2(!entry.contains(QLatin1String(absent)), absent);
        for (const char *present : {"id", "title", "titleNormalized", "text", "excerpt", "isPublished", "inPodcast"})
            QVERIFY2(entry.contains(QLatin1String(present)), present);
        QVERIFY(!bytes.contains("null"));
    }

    void alignmentRunsCountUtf16UnitsAndMergeEqualNeighbours()
    {
        const QByteArray rich = richText({{QStringLiteral("🍂 Herbst"), Qt::AlignLeft},
                                          {QStringLiteral("Mitte"), Qt::AlignHCenter},
                                          {QStringLiteral("Auch Mitte"), Qt::AlignHCenter},
                                          {QStringLiteral("Rechts"), Qt::AlignRight},
                                          {QStringLiteral("Block"), Qt::AlignJustify}});
        const auto runs = OdeLeafReaderPackageExporter::paragraphAlignments(QString(), rich);
        QVERIFY(runs);
        // "🍂 Herbst" is 9 UTF-16 units; each paragraph but the last owns its break.
        const QList<ParagraphAlignment> expected = {{0, 10, TextAlignment::left},
                                                    {10, 17, TextAlignment::center},
                                                    {27, 7, TextAlignment::right},
                                                    {34, 5, TextAlignment::justified}};
        QCOMPARE(*runs, expected);
        QVERIFY(!OdeLeafReaderPackageExporter::paragraphAlignments(QString(), std::nullopt));
        QVERIFY(!OdeLeafReaderPackageExporter::paragraphAlignments(QString(), QByteArray("kein RTF")));
    }

    void codecReadsBackWhatItWrites()
    {
        PoemPtr poem = add(QStringLiteral("Rund"), QStringLiteral("rund"), QStringLiteral("Zeile/1\n\"Zwei\""));
        poem->setRichTextData(richText({{QStringLiteral("Zeile/1"), Qt::AlignHCenter}}));
        poem->setDate(QDateTime(QDate(2024, 2, 29), QTime(23, 0), Qt::UTC));
        poem->setCategory(QStringLiteral("Lyrik"));
        poem->setPublished(true);
        const OdeLeafReaderPackage package =
            OdeLeafReaderPackageExporter::makePackage(context().fetch(), {QStringLiteral("Lyrik")}, exportedAt);
        const auto decoded = OdeLeafReaderPackageCodec::decode(OdeLeafReaderPackageCodec::encode(package));
        QVERIFY2(decoded, qPrintable(decoded.errorMessage()));
        // Dates travel in whole seconds.
        OdeLeafReaderPackage expected = package;
        expected.exportedAt = exportedAt.addMSecs(-880);
        QCOMPARE(*decoded, expected);

        QVERIFY(!OdeLeafReaderPackageCodec::decode("{\"format\":\"etwas anderes\"}"));
        QVERIFY(!OdeLeafReaderPackageCodec::decode("[1, 2"));
    }

    void smallArchiveMatchesTheGoldenPackage()
    {
        PoemPtr full = add(QStringLiteral("Herbst/Winter"), QStringLiteral("herbst winter"),
                           QStringLiteral("Über Nacht/am Fluss\n\t„Stille“ \"und\" Licht 🍂\\"));
        full->setId(QUuid::fromString(QStringLiteral("6f1c2a53-3d0e-4e43-9c7b-0b6e2b4d1a11")));
        full->setCategory(QStringLiteral(" Lyrik "));
        full->setDate(QDateTime(QDate(2024, 2, 29), QTime(23, 0), Qt::UTC));
        full->setCreatedAt(QDateTime(QDate(2024, 3, 1), QTime(8, 15, 0, 999), Qt::UTC));
        full->setUpdatedAt(QDateTime(QDate(2026, 11, 14), QTime(20, 59, 1), Qt::UTC));
        full->setPublished(true);
        full->setInPodcast(true);
        full->setRichTextData(
            richText({{QStringLiteral("Über Nacht"), Qt::AlignHCenter}, {QStringLiteral("am Fluss"), Qt::AlignLeft}}));
        PoemPtr bare = add(QStringLiteral("Abendlied"), QStringLiteral("abendlied"), QString());
        bare->setId(QUuid::fromString(QStringLiteral("0D4C6F0E-9A5B-4C1D-8E2F-3A4B5C6D7E8F")));
        add(QStringLiteral("Im Papierkorb"), QStringLiteral("im papierkorb"))->setDeletedAt(exportedAt);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("golden.odeleafreader"));
        const auto written = OdeLeafReaderPackageExporter::write(
            context().fetch(), {QStringLiteral("Natur"), QStringLiteral("Lyrik")}, path, exportedAt);
        QCOMPARE(written.value(), 2);
        QCOMPARE(fileBytes(path), fileBytes(QStringLiteral(ODELEAF_TEST_DATA "/export/golden-reader-package.json")));
        QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    }

    void writeFailureLeavesNoFile()
    {
        add(QStringLiteral("A"), QStringLiteral("a"));
        const QString path = QStringLiteral("/proc/odeleaf-reader/x.odeleafreader");
        const auto written = OdeLeafReaderPackageExporter::write(context().fetch(), {}, path, exportedAt);
        QVERIFY(!written);
        QVERIFY(OdeLeafReaderPackageExporter::failedStatus(written.errorMessage())
                    .startsWith(QStringLiteral("Reader-Paket konnte nicht erstellt werden: ")));
        QVERIFY(!QFile::exists(path));
    }

    void fileNameAndStatusTexts()
    {
        const QDateTime local(QDate(2026, 3, 5), QTime(7, 9, 59), Qt::LocalTime);
        QCOMPARE(OdeLeafReaderPackageExporter::proposedFileName(local),
                 QStringLiteral("OdeLeaf-Reader-2026-03-05-0709.odeleafreader"));
        QCOMPARE(OdeLeafReaderPackageExporter::createdStatus(3, QStringLiteral("/tmp/a/b.odeleafreader")),
                 QStringLiteral("Reader-Paket erstellt: 3 Gedichte gespeichert. Datei: b.odeleafreader"));
    }
};

QTEST_MAIN(ReaderPackageTest)
#include "tst_readerpackage.moc"
