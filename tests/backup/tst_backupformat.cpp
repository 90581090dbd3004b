#include "BackupTestSupport.h"

#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "backup/ArchiveJson.h"
#include "backup/BackupEncoder.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"
#include "backup/SafetyBackupFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace BackupTestSupport;

namespace {

const QDateTime goldenExportedAt = utc(2026, 11, 14, 21, 3, 47, 400);
const QByteArray goldenRichText = QByteArray("{\\rtf1\\ansi Herbst}\xfb\xff\xbf", 22) + '\0';

QByteArray goldenDocument()
{
    return fileBytes(QStringLiteral(ODELEAF_TEST_DATA "/backup/golden-backup.json"));
}

QByteArray goldenWith(const QByteArray &from, const QByteArray &to)
{
    QByteArray document = goldenDocument();
    Q_ASSERT(document.contains(from));
    return document.replace(from, to);
}

int permissions(const QString &path)
{
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 0777) : -1;
}

// The generic encoder over the entries' JSON objects: an independent second opinion.
QByteArray encodedThroughJsonTree(const Backup &backup)
{
    QJsonArray poems;
    for (const PoemBackup &entry : backup.poems)
        poems.append(entry.toJson());
    const QJsonObject document{{QStringLiteral("app"), backup.app},
                               {QStringLiteral("schemaVersion"), backup.schemaVersion},
                               {QStringLiteral("exportedAt"), ArchiveJson::dateText(backup.exportedAt)},
                               {QStringLiteral("poemCount"), backup.poemCount},
                               {QStringLiteral("poems"), poems}};
    return ArchiveJson::encode(document);
}

QString randomText(QRandomGenerator &random)
{
    static const QStringList pieces = {QStringLiteral("Herbst"), QStringLiteral("/"),  QStringLiteral("\\"),
                                       QStringLiteral("\""),     QStringLiteral("\n"), QStringLiteral("\t"),
                                       QStringLiteral("Ü"),      QStringLiteral("ß"),  QStringLiteral("🍂"),
                                       QStringLiteral("\u2028"), QString(QChar(1)),    QString(QChar(0x1f)),
                                       QStringLiteral("\u00a0"), QStringLiteral("{}"), QStringLiteral(" ")};
    QString text;
    // A leading byte-order mark is text too and must survive.
    if (random.bounded(4) == 0)
        text.append(QChar(0xFEFF));
    // Long enough that special characters fall at every offset of an eight-byte word.
    const int count = random.bounded(60);
    for (int i = 0; i < count; ++i)
        text.append(pieces.at(random.bounded(pieces.size())));
    return text;
}

} // namespace

class BackupFormatTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;

    ArchiveContext &context() { return m_archive->context(); }

    // The three poems behind tests/data/backup/golden-backup.json, with the milliseconds and
    // the local times that the document must flatten to whole UTC seconds.
    QList<PoemPtr> goldenPoems()
    {
        PoemPtr full = context().insertPoem();
        full->setId(QUuid::fromString(QStringLiteral("6f1c2a53-3d0e-4e43-9c7b-0b6e2b4d1a11")));
        full->setTitle(QStringLiteral("Herbst/Winter"));
        full->setTitleNormalized(QStringLiteral("herbst winter"));
        full->setCategory(QStringLiteral("Lyrik"));
        full->setDate(utc(2024, 2, 29, 23, 0, 0));
        full->setText(QStringLiteral("Über Nacht/am Fluss\n\t„Stille“ \"und\" Licht 🍂\\"));
        full->setRichTextData(goldenRichText);
        full->setWriterNotes(QStringLiteral("Für die Lesung – Zeile 2 prüfen\r\nGlocke:\a"));
        full->setExternalId(QStringLiteral("alt/42"));
        full->setInPodcast(true);
        full->setPublished(true);
        full->setCreatedAt(QDateTime(QDate(2024, 3, 1), QTime(0, 0), Qt::LocalTime));
        full->setUpdatedAt(utc(2026, 11, 14, 20, 59, 1, 999));

        PoemPtr trashed = context().insertPoem();
        trashed->setId(QUuid::fromString(QStringLiteral("0D4C6F0E-9A5B-4C1D-8E2F-3A4B5C6D7E8F")));
        trashed->setTitle(QStringLiteral("Im Papierkorb"));
        trashed->setTitleNormalized(QStringLiteral("im papierkorb"));
        trashed->setCategory(QString());
        trashed->setText(QString());
        trashed->setCreatedAt(utc(2023, 5, 6, 7, 8, 9));
        trashed->setUpdatedAt(utc(2026, 11, 1, 12, 0, 0));
        trashed->setDeletedAt(utc(2026, 11, 1, 12, 0, 0, 250));

        context().insertPoem(); // no id, no title, no dates
        return context().fetch();
    }

private Q_SLOTS:
    void init() { m_archive = std::make_unique<TestArchive>(); }

    void writerReproducesTheHandWrittenDocument()
    {
        const QString path = m_archive->path(QStringLiteral("backup.json"));
        const auto written = BackupExporter::writeBackup(goldenPoems(), path, goldenExportedAt);
        QVERIFY2(written.ok(), qPrintable(written.errorMessage()));
        QCOMPARE(*written, 3);
        QCOMPARE(fileBytes(path), goldenDocument());
        QCOMPARE(permissions(path), 0600);
    }

    void handWrittenDocumentReadsBackExactly()
    {
        const auto decoded = BackupReader::decode(goldenDocument());
        QVERIFY2(decoded.ok(), qPrintable(decoded.errorMessage()));
        const Backup &backup = *decoded;
        QCOMPARE(backup.app, QStringLiteral("OdeLeaf"));
        QCOMPARE(backup.schemaVersion, 3);
        QCOMPARE(backup.exportedAt, utc(2026, 11, 14, 21, 3, 47));
        QCOMPARE(backup.poems.size(), 3);

        // Field checks independent of the writer; the re-encoding below covers the rest.
        const PoemBackup &full = backup.poems.at(0);
        QCOMPARE(full.richTextData, std::optional<QByteArray>(goldenRichText));
        QCOMPARE(full.title, std::optional<QString>(QStringLiteral("Herbst/Winter")));
        QCOMPARE(backup.poems.at(1).deletedAt, std::optional<QDateTime>(utc(2026, 11, 1, 12, 0, 0)));
        QCOMPARE(backup.poems.at(1).category, std::optional<QString>(QString()));
        const PoemBackup &bare = backup.poems.at(2);
        QVERIFY(!bare.id && !bare.title && !bare.text && !bare.createdAt && !bare.updatedAt && !bare.deletedAt);

        QCOMPARE(BackupEncoder::encode(backup), goldenDocument());
    }

    void emptyArchiveGivesAnEmptyPoemList()
    {
        const QString path = m_archive->path(QStringLiteral("leer.json"));
        QCOMPARE(*BackupExporter::writeBackup({}, path, goldenExportedAt), 0);
        QCOMPARE(fileBytes(path),
                 QByteArray("{\n  \"app\" : \"OdeLeaf\",\n  \"exportedAt\" : \"2026-11-14T21:03:47Z\",\n"
                            "  \"poemCount\" : 0,\n  \"poems\" : [],\n  \"schemaVersion\" : 3\n}"));
        const auto decoded = BackupReader::read(path);
        QVERIFY(decoded.ok());
        QVERIFY(decoded->poems.isEmpty());
    }

    // Random texts full of characters that need escaping: the streaming writer, the
    // generic encoder and the reader must agree on every one of them.
    void streamingWriterAgreesWithTheGenericEncoderAndTheReader()
    {
        QRandomGenerator random(7);
        for (int i = 0; i < 300; ++i) {
            PoemPtr poem = context().insertPoem();
            if (random.bounded(3) != 0)
                poem->setId(QUuid::createUuid());
            if (random.bounded(4) != 0)
                poem->setTitle(randomText(random));
            if (random.bounded(4) != 0)
                poem->setText(randomText(random));
            if (random.bounded(3) == 0)
                poem->setWriterNotes(randomText(random));
            if (random.bounded(3) == 0) {
                QByteArray bytes(random.bounded(200), Qt::Uninitialized);
                for (char &byte : bytes)
                    byte = char(random.bounded(256));
                poem->setRichTextData(bytes);
            }
            if (random.bounded(2) == 0)
                poem->setUpdatedAt(QDateTime::fromMSecsSinceEpoch(
                    qint64(random.bounded(2000000000)) * 1000 + random.bounded(1000), Qt::UTC));
            poem->setInPodcast(random.bounded(2) == 0);
        }
        const Backup backup = Backup::make(context().fetch(), goldenExportedAt).value();
        const QByteArray streamed = BackupEncoder::encode(backup);
        QCOMPARE(streamed, encodedThroughJsonTree(backup));

        const auto decoded = BackupReader::decode(streamed);
        QVERIFY2(decoded.ok(), qPrintable(decoded.errorMessage()));
        QCOMPARE(decoded->poems.size(), backup.poems.size());
        for (qsizetype i = 0; i < backup.poems.size(); ++i)
            QCOMPARE(decoded->poems.at(i).toJson(), backup.poems.at(i).toJson());
    }

    void readerRejectsMalformedDocuments_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("message");

        QTest::newRow("empty file") << QByteArray("  \n") << QStringLiteral("Die Datei ist leer.");
        QTest::newRow("not JSON") << QByteArray("Liebe Grüße, kein Backup") << QStringLiteral("kein gültiges JSON");
        QTest::newRow("truncated") << goldenDocument().left(700) << QStringLiteral("unerwartetes Dateiende");
        QTest::newRow("trailing text") << goldenDocument() + "\n}" << QStringLiteral("nach dem Dokument");
        QTest::newRow("trailing comma") << goldenWith("\"schemaVersion\" : 3", "\"schemaVersion\" : 3,")
                                        << QStringLiteral("Feldname erwartet");
        QTest::newRow("array at top") << QByteArray("[1, 2]") << QStringLiteral("kein JSON-Objekt");
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE{\0}\0", 6) << QStringLiteral("nicht UTF-8");
        QTest::newRow("invalid UTF-8") << goldenWith("Im Papierkorb", "Im Papierk\xF6rb")
                                       << QStringLiteral("ungültige UTF-8-Kodierung (Zeile 31, Spalte 17)");
        QTest::newRow("lone surrogate") << goldenWith("Im Papierkorb", "Im \\ud800Papierkorb")
                                        << QStringLiteral("ungültige Escape-Sequenz");
        QTest::newRow("raw control character")
            << goldenWith("Im Papierkorb", "Im\tPapierkorb") << QStringLiteral("Steuerzeichen");
        QTest::newRow("deep nesting") << goldenWith("\"schemaVersion\" : 3",
                                                    "\"schemaVersion\" : 3, \"x\" : " + QByteArray(300, '[') +
                                                        QByteArray(300, ']'))
                                      << QStringLiteral("zu tief verschachtelt");

        QTest::newRow("missing app") << goldenWith("  \"app\" : \"OdeLeaf\",\n", "")
                                     << QStringLiteral("Pflichtfeld „app“ fehlt.");
        QTest::newRow("missing exportedAt") << goldenWith("  \"exportedAt\" : \"2026-11-14T21:03:47Z\",\n", "")
                                            << QStringLiteral("Pflichtfeld „exportedAt“ fehlt.");
        QTest::newRow("missing poemCount")
            << goldenWith("  \"poemCount\" : 3,\n", "") << QStringLiteral("Pflichtfeld „poemCount“ fehlt.");
        QTest::newRow("missing poems") << goldenWith("\"poems\" : [", "\"gedichte\" : [")
                                       << QStringLiteral("Pflichtfeld „poems“ fehlt.");
        QTest::newRow("missing schemaVersion")
            << goldenWith(",\n  \"schemaVersion\" : 3", "") << QStringLiteral("Pflichtfeld „schemaVersion“ fehlt.");
        QTest::newRow("missing objectURI")
            << goldenWith("false,\n      \"objectURI\" : \"x-odeleaf:\\/\\/archive\\/Poem\\/p3\"", "false")
            << QStringLiteral("Gedicht 3: Pflichtfeld „objectURI“ fehlt.");
        QTest::newRow("missing inPodcast") << goldenWith("      \"inPodcast\" : true,\n", "")
                                           << QStringLiteral("Gedicht 1: Pflichtfeld „inPodcast“ fehlt.");
        QTest::newRow("missing isPublished")
            << goldenWith("\"isPublished\" : false,\n      \"objectURI\" : \"x-odeleaf:\\/\\/archive\\/Poem\\/p2\"",
                          "\"objectURI\" : \"x-odeleaf:\\/\\/archive\\/Poem\\/p2\"")
            << QStringLiteral("Gedicht 2: Pflichtfeld „isPublished“ fehlt.");

        QTest::newRow("fractional seconds")
            << goldenWith("\"2026-11-14T21:03:47Z\"", "\"2026-11-14T21:03:47.250Z\"")
            << QStringLiteral("Feld „exportedAt“ enthält kein gültiges Datum: „2026-11-14T21:03:47.250Z“");
        QTest::newRow("offset instead of Z")
            << goldenWith("\"2023-05-06T07:08:09Z\"", "\"2023-05-06T09:08:09+02:00\"")
            << QStringLiteral("Gedicht 2: Feld „createdAt“ enthält kein gültiges Datum");
        QTest::newRow("no such day") << goldenWith("\"2024-02-29T23:00:00Z\",\n      \"externalId\"",
                                                   "\"2023-02-29T23:00:00Z\",\n      \"externalId\"")
                                     << QStringLiteral("Gedicht 1: Feld „date“ enthält kein gültiges Datum");
        QTest::newRow("base64 with bad character")
            << goldenWith("ffv\\/vwA=", "ffv*vwA=")
            << QStringLiteral("Gedicht 1: Feld „richTextData“ ist kein gültiges Base64.");
        QTest::newRow("base64 without padding")
            << goldenWith("ffv\\/vwA=", "ffv\\/vwA") << QStringLiteral("kein gültiges Base64");
        QTest::newRow("base64 with inner padding")
            << goldenWith("ffv\\/vwA=", "ff=\\/vwAA") << QStringLiteral("kein gültiges Base64");
        QTest::newRow("id not a UUID") << goldenWith("0D4C6F0E-9A5B-4C1D-8E2F-3A4B5C6D7E8F", "Papierkorb-1")
                                       << QStringLiteral("Gedicht 2: Feld „id“ ist keine gültige UUID");

        QTest::newRow("poemCount as text")
            << goldenWith("\"poemCount\" : 3", "\"poemCount\" : \"3\"")
            << QStringLiteral("Feld „poemCount“ hat einen ungültigen Typ (erwartet: ganze Zahl).");
        QTest::newRow("schemaVersion fractional") << goldenWith("\"schemaVersion\" : 3", "\"schemaVersion\" : 3.5")
                                                  << QStringLiteral("Feld „schemaVersion“ hat einen ungültigen Typ");
        QTest::newRow("app null") << goldenWith("\"app\" : \"OdeLeaf\"", "\"app\" : null")
                                  << QStringLiteral("Feld „app“ hat einen ungültigen Typ (erwartet: Text).");
        QTest::newRow("poems an object") << QByteArray("{\"app\":\"OdeLeaf\",\"poems\":{}}")
                                         << QStringLiteral("Feld „poems“ hat einen ungültigen Typ (erwartet: Liste).");
        QTest::newRow("entry not an object") << QByteArray("{\"poems\":[{\"objectURI\":\"a\",\"inPodcast\":true,"
                                                           "\"isPublished\":true}, 5]}")
                                             << QStringLiteral("Gedicht 2: Der Eintrag ist kein JSON-Objekt.");
        QTest::newRow("flag as text")
            << goldenWith("\"inPodcast\" : true", "\"inPodcast\" : \"true\"")
            << QStringLiteral("Gedicht 1: Feld „inPodcast“ hat einen ungültigen Typ (erwartet: Wahrheitswert).");
        QTest::newRow("title as number") << goldenWith("\"title\" : \"Im Papierkorb\"", "\"title\" : 5")
                                         << QStringLiteral(
                                                "Gedicht 2: Feld „title“ hat einen ungültigen Typ (erwartet: Text).");
        // Whichever copy a reader kept, the other one would be lost without a word.
        QTest::newRow("title twice") << goldenWith("\"title\" : \"Im Papierkorb\"",
                                                   "\"title\" : \"Im Papierkorb\", \"title\" : \"Anders\"")
                                     << QStringLiteral("Feldname „title“ kommt doppelt vor");
        QTest::newRow("escaped name twice")
            << goldenWith("\"app\" : \"OdeLeaf\"", "\"app\" : \"OdeLeaf\", \"\\u0061pp\" : \"x\"")
            << QStringLiteral("Feldname „app“ kommt doppelt vor");
    }

    void readerRejectsMalformedDocuments()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, message);
        const auto decoded = BackupReader::decode(document);
        QVERIFY(!decoded.ok());
        QVERIFY2(decoded.errorMessage().contains(message), qPrintable(decoded.errorMessage()));
    }

    void readerAcceptsWhatItMayBeLenientAbout_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<qint64>("schemaVersion");

        QTest::newRow("schemaVersion 1") << goldenWith("\"schemaVersion\" : 3", "\"schemaVersion\" : 1") << qint64(1);
        QTest::newRow("schemaVersion 2") << goldenWith("\"schemaVersion\" : 3", "\"schemaVersion\" : 2") << qint64(2);
        QTest::newRow("schemaVersion 99")
            << goldenWith("\"schemaVersion\" : 3", "\"schemaVersion\" : 99") << qint64(99);
        QTest::newRow("other app, wrong count")
            << goldenWith("\"app\" : \"OdeLeaf\",\n  \"exportedAt\" : \"2026-11-14T21:03:47Z\",\n  \"poemCount\" : 3",
                          "\"app\" : \"Andere\",\n  \"exportedAt\" : \"2026-11-14T21:03:47Z\",\n  \"poemCount\" : 41")
            << qint64(3);
        QTest::newRow("plain slashes") << goldenDocument().replace("\\/", "/") << qint64(3);
        QTest::newRow("unknown keys") << goldenWith("\"schemaVersion\" : 3",
                                                    "\"schemaVersion\" : 3, \"device\" : {\"name\" : [1, 2.5e3, null, "
                                                    "true, \"\\u00dc\"]}")
                                             .replace("\"inPodcast\" : true",
                                                      "\"inPodcast\" : true, \"mood\" : \"herbstlich\"")
                                      << qint64(3);
        QTest::newRow("null optionals") << goldenWith(
                                               "\"objectURI\" : \"x-odeleaf:\\/\\/archive\\/Poem\\/p3\"",
                                               "\"objectURI\" : \"x-odeleaf:\\/\\/archive\\/Poem\\/p3\", \"id\" : "
                                               "null, \"richTextData\" : null, \"deletedAt\" : null")
                                        << qint64(3);
        QTest::newRow("byte-order mark, compact")
            << QByteArray("\xEF\xBB\xBF") + QJsonDocument::fromJson(goldenDocument()).toJson(QJsonDocument::Compact)
            << qint64(3);
    }

    void readerAcceptsWhatItMayBeLenientAbout()
    {
        QFETCH(QByteArray, document);
        QFETCH(qint64, schemaVersion);
        const auto decoded = BackupReader::decode(document);
        QVERIFY2(decoded.ok(), qPrintable(decoded.errorMessage()));
        QCOMPARE(decoded->schemaVersion, schemaVersion);
        QCOMPARE(decoded->poems.size(), 3);
        // Whatever the leniency, the entries are those of the document.
        const auto golden = BackupReader::decode(goldenDocument());
        for (int i = 0; i < 3; ++i)
            QCOMPARE(decoded->poems.at(i).toJson(), golden->poems.at(i).toJson());
    }

    void safetyBackupGoesIntoItsOwnPrivateFolder()
    {
        ApplicationSupport::setDirectory(m_archive->path(QStringLiteral("tief/unten/OdeLeaf")));
        const QList<PoemPtr> poems = goldenPoems();
        const auto written =
            BackupExporter::writeAutomaticSafetyBackup(poems, QStringLiteral("Pre Text/Import"), goldenExportedAt);
        QVERIFY2(written.ok(), qPrintable(written.errorMessage()));
        const QString folder = m_archive->path(QStringLiteral("tief/unten/OdeLeaf/Safety Backups"));
        QCOMPARE(BackupExporter::automaticBackupDirectory(), folder);
        // 21:03:47 UTC is 22:03:47 in Berlin in November.
        QCOMPARE(*written, folder + QStringLiteral("/pre-text-import-2026-11-14-220347.json"));
        QCOMPARE(permissions(folder), 0700);
        QCOMPARE(permissions(*written), 0600);
        QCOMPARE(BackupReader::read(*written)->poems.size(), 3);

        // Two operations within one second: the second never replaces the first one's copy,
        // it takes the next second's name.
        const auto second = BackupExporter::writeAutomaticSafetyBackup(
            poems.mid(0, 1), QStringLiteral("pre-text-import"), goldenExportedAt);
        QCOMPARE(second.value(), folder + QStringLiteral("/pre-text-import-2026-11-14-220348.json"));
        QCOMPARE(BackupReader::read(*written)->poems.size(), 3);
        QCOMPARE(BackupReader::read(*second)->poems.size(), 1);

        // At the real time the name of the next second is only taken once it has come.
        QStringList paths;
        for (int i = 0; i < 3; ++i) {
            const auto now = BackupExporter::writeAutomaticSafetyBackup(poems.mid(0, 2), QStringLiteral("pre-restore"));
            QVERIFY2(now.ok(), qPrintable(now.errorMessage()));
            paths.append(*now);
            const auto stamp = SafetyBackupFile::stampOf(QFileInfo(*now).fileName());
            QVERIFY(stamp && *stamp <= QDateTime::currentDateTime());
        }
        QCOMPARE(QSet<QString>(paths.begin(), paths.end()).size(), 3);
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden).size(), 5);
    }

    void safetyBackupFailsWhenItsFolderCannotExist()
    {
        // A regular file where a folder should be stops even root.
        QVERIFY(writeFile(m_archive->path(QStringLiteral("blocker")), "kein Ordner"));
        ApplicationSupport::setDirectory(m_archive->path(QStringLiteral("blocker/OdeLeaf")));
        const auto written = BackupExporter::writeAutomaticSafetyBackup(goldenPoems(), QStringLiteral("daily"));
        QVERIFY(!written.ok());
        QVERIFY2(written.errorMessage().contains(QStringLiteral("konnte nicht angelegt werden")),
                 qPrintable(written.errorMessage()));
    }

    void fileNames_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("cleaned");
        QTest::newRow("plain") << QStringLiteral("pre-restore") << QStringLiteral("pre-restore");
        QTest::newRow("blank and slash") << QStringLiteral("Pre Text/Import") << QStringLiteral("pre-text-import");
        QTest::newRow("runs of separators") << QStringLiteral("  daily__ ") << QStringLiteral("daily");
        QTest::newRow("umlauts are letters") << QStringLiteral("Vor Änderung") << QStringLiteral("vor-änderung");
        QTest::newRow("combining mark") << QStringLiteral("Cafe\u0301 1") << QStringLiteral("cafe\u0301-1");
        QTest::newRow("emoji separates") << QStringLiteral("a🍂b") << QStringLiteral("a-b");
    }

    void fileNames()
    {
        QFETCH(QString, prefix);
        QFETCH(QString, cleaned);
        QCOMPARE(BackupExporter::cleanedPrefix(prefix), cleaned);
        QCOMPARE(BackupExporter::safetyBackupFileName(prefix, goldenExportedAt),
                 cleaned + QStringLiteral("-2026-11-14-220347.json"));
        QCOMPARE(BackupExporter::manualBackupFileName(goldenExportedAt),
                 QStringLiteral("OdeLeaf-Backup-2026-11-14-2203.json"));
    }

    void failedWriteKeepsTheOldFileAndLeavesNothingBehind()
    {
        PoemPtr poem = context().insertPoem();
        poem->setText(QString(2 << 20, QLatin1Char('x')));
        const Backup backup = Backup::make(context().fetch(), goldenExportedAt).value();
        const QString folder = m_archive->path(QStringLiteral("ziel"));
        QVERIFY(QDir().mkpath(folder));
        const QString existing = folder + QStringLiteral("/alt.json");
        QVERIFY(writeFile(existing, "altes Backup"));

        // A file-size limit fails the write half-way, whoever runs the test.
        struct rlimit saved {};
        QVERIFY(::getrlimit(RLIMIT_FSIZE, &saved) == 0);
        const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        struct rlimit limited = saved;
        limited.rlim_cur = 256 << 10;
        QVERIFY(::setrlimit(RLIMIT_FSIZE, &limited) == 0);
        const auto overExisting = BackupExporter::writeDocument(backup, existing);
        const auto toNewFile = BackupExporter::writeDocument(backup, folder + QStringLiteral("/neu.json"));
        ::setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previousHandler);

        QVERIFY(!overExisting.ok());
        QVERIFY2(overExisting.errorMessage().startsWith(
                     QStringLiteral("Die Datei „alt.json“ konnte nicht geschrieben werden")),
                 qPrintable(overExisting.errorMessage()));
        QVERIFY(!toNewFile.ok());
        QCOMPARE(fileBytes(existing), QByteArray("altes Backup"));
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("alt.json")});

        const auto intoMissingFolder =
            BackupExporter::writeDocument(backup, m_archive->path(QStringLiteral("fehlt/backup.json")));
        QVERIFY(!intoMissingFolder.ok());
        QVERIFY(!QFileInfo::exists(m_archive->path(QStringLiteral("fehlt"))));
    }
};

QTEST_GUILESS_MAIN(BackupFormatTest)
#include "tst_backupformat.moc"
