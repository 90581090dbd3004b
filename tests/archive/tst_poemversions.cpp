#include "StoreFaults.h"

#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/ByteDelta.h"
#include "archive/CategoryCatalog.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"
#include "archive/PoemStore.h"
#include "archive/PoemVersions.h"
#include "archive/Trash.h"
#include "archive/VerseDiff.h"
#include "archive/VersionRetention.h"
#include "backup/Backup.h"
#include "backup/RestorePlanner.h"
#include "editor/EditingSession.h"
#include "import/CSVImporter.h"
#include "import/ImportApplier.h"
#include "import/ImportUndo.h"
#include "import/SinglePoemImport.h"

#include <QFile>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

namespace {

const QDateTime start(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC);

QByteArray photo(qsizetype size, quint32 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(seed);
    for (char &byte : bytes)
        byte = char(random.bounded(256));
    return bytes;
}

QByteArray rtfWithPhoto(const QByteArray &picture, const QByteArray &verse)
{
    return "{\\rtf1\\ansi " + verse + "\\par {\\pict\\jpegblip\\bin" + QByteArray::number(picture.size()) + ' ' +
           picture + "}\\par Ende}";
}

QStringList labels(const std::vector<PoemVersion> &versions)
{
    QStringList out;
    for (const PoemVersion &version : versions)
        out.append(QStringLiteral("%1 %2").arg(version.number).arg(version.label()));
    return out;
}

using Operation = std::function<void(ArchiveContext &, const PoemPtr &, const QString &dir)>;

} // namespace

class PoemVersionsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<PersistenceController> m_store;
    QDateTime m_now;

    ArchiveContext &context() { return m_store->viewContext(); }

    PoemPtr savedPoem(const QString &text, const QString &category = QString())
    {
        const PoemPtr poem = context().insertPoem();
        poem->setId(QUuid::createUuid());
        PoemEdit::setTitle(*poem, QStringLiteral("Herbst"));
        poem->setText(text);
        if (!category.isEmpty())
            poem->setCategory(category);
        if (!context().save())
            return nullptr;
        return poem;
    }

    void edit(const PoemPtr &poem, const QString &text)
    {
        QVERIFY(PoemEdit::apply(
            context(), *poem, [&](Poem &p) { p.setText(text); }, m_now));
    }

    std::vector<PoemVersion> versionsOf(const PoemPtr &poem)
    {
        auto versions = PoemVersions::list(context(), *poem);
        return versions ? std::move(versions.value()) : std::vector<PoemVersion>();
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        ApplicationSupport::setDirectory(m_dir->path());
        auto opened = PersistenceController::open(m_dir->filePath(QStringLiteral("OdeLeaf.sqlite")));
        QVERIFY2(opened, qPrintable(opened.errorMessage()));
        m_store = std::move(opened.value());
        m_now = start;
        context().setClock([this] { return m_now; });
    }

    void cleanup() { m_store.reset(); }

    void comparesVerseLinesWordByWord_data()
    {
        QTest::addColumn<QString>("older");
        QTest::addColumn<QString>("newer");
        QTest::addColumn<QString>("marked");
        QTest::addColumn<int>("added");
        QTest::addColumn<int>("removed");
        QTest::newRow("changed rhyme word") << "Der Mond scheint hell\nich gehe schnell"
                                            << "Der Mond scheint klar\nich gehe schnell"
                                            << "Der Mond scheint [-hell-] {+klar+}\nich gehe schnell" << 1 << 1;
        QTest::newRow("deleted before inserted")
            << "Der Abend sinkt auf stille Felder,"
            << "Der Abend senkt sich auf die Felder,"
            << "Der Abend [-sinkt-] {+senkt+} {+sich+} auf [-stille-] {+die+} Felder," << 3 << 2;
        QTest::newRow("moved line") << "Erst eins\nDann zwei\nZuletzt drei"
                                    << "Dann zwei\nZuletzt drei\nErst eins"
                                    << "[-Erst-] [-eins-]\nDann zwei\nZuletzt drei\n{+Erst+} {+eins+}" << 2 << 2;
        QTest::newRow("split line") << "Der Wind weht über das Feld\nStille"
                                    << "Der Wind weht\nüber das Feld\nStille"
                                    << "Der Wind weht\nüber das Feld\nStille" << 0 << 0;
        QTest::newRow("joined lines") << "Der Wind weht\nüber das Feld"
                                      << "Der Wind weht über das Feld"
                                      << "Der Wind weht über das Feld" << 0 << 0;
        QTest::newRow("deleted stanza") << "Eins\n\nZwei drei\n\nVier"
                                        << "Eins\n\nVier"
                                        << "Eins\n\n[-Zwei-] [-drei-]\n\nVier" << 0 << 2;
        QTest::newRow("first version") << ""
                                       << "Neu hier"
                                       << "{+Neu+} {+hier+}" << 2 << 0;
        QTest::newRow("line endings and spaces only") << "Eins  zwei\r\ndrei\n"
                                                      << "Eins zwei\ndrei"
                                                      << "Eins zwei\ndrei" << 0 << 0;
    }

    void comparesVerseLinesWordByWord()
    {
        QFETCH(QString, older);
        QFETCH(QString, newer);
        QFETCH(QString, marked);
        QFETCH(int, added);
        QFETCH(int, removed);
        const VerseDiff diff = VerseDiff::compare(older, newer);
        QCOMPARE(diff.markedText(), marked);
        QCOMPARE(diff.wordsAdded(), added);
        QCOMPARE(diff.wordsRemoved(), removed);
        QCOMPARE(VerseDiff::wordCounts(older, newer), std::make_pair(added, removed));
    }

    void foldsUnchangedStanzasAroundAChange()
    {
        const QString older = QStringLiteral("a\nb\n\nc\nd\n\ne\nf\n\ng\nh\n\ni");
        QString newer = older;
        newer.replace(QLatin1Char('e'), QStringLiteral("E"));
        const auto blocks = VerseDiff::compare(older, newer).foldedBlocks();
        QStringList shape;
        for (const VerseDiff::Block &block : blocks) {
            if (const auto *folded = std::get_if<VerseDiff::FoldedStanzas>(&block))
                shape.append(QStringLiteral("…%1").arg(folded->count));
            else
                shape.append(std::get<VerseDiff::Line>(block).isBlank() ? QStringLiteral("-") : QStringLiteral("line"));
        }
        QCOMPARE(shape, QStringList({"…2", "-", "line", "line", "…2"}));
    }

    void retentionKeepsNamedRecentDailyAndMonthly_data()
    {
        QTest::addColumn<QList<int>>("ageHours"); // one version each, ids counting from 1
        QTest::addColumn<QList<int>>("named");
        QTest::addColumn<QList<qint64>>("expired");
        const int day = 24;
        QTest::newRow("recent all kept") << QList<int>{1, 2, 3, 29 * day} << QList<int>{} << QList<qint64>{};
        QTest::newRow("older than 30 days: newest of the day")
            << QList<int>{40 * day + 1, 40 * day + 2, 40 * day + 3} << QList<int>{} << QList<qint64>{2, 3};
        QTest::newRow("named never goes") << QList<int>{40 * day + 1, 40 * day + 2} << QList<int>{2} << QList<qint64>{};
        QTest::newRow("older than a year: newest of the month")
            << QList<int>{400 * day, 401 * day, 402 * day, 440 * day} << QList<int>{} << QList<qint64>{2, 3};
    }

    void retentionKeepsNamedRecentDailyAndMonthly()
    {
        QFETCH(QList<int>, ageHours);
        QFETCH(QList<int>, named);
        QFETCH(QList<qint64>, expired);
        const QDateTime now(QDate(2026, 11, 20), QTime(12, 0), Qt::UTC);
        std::vector<VersionRetention::Entry> entries;
        for (int i = 0; i < ageHours.size(); ++i)
            entries.push_back({i + 1, now.addSecs(-3600LL * ageHours[i]), named.contains(i + 1)});
        auto gone = VersionRetention::expired(entries, now);
        std::sort(gone.begin(), gone.end());
        QCOMPARE(QList<qint64>(gone.begin(), gone.end()), expired);
    }

    void retentionRunsWithTheInjectedClock()
    {
        const PoemPtr poem = savedPoem(QStringLiteral("Tag 0"));
        QMap<qint64, QString> texts{{1, QStringLiteral("Tag 0")}};
        for (int day = 1; day <= 6; ++day) {
            for (int hour = 0; hour < 3; ++hour) {
                m_now = start.addDays(day).addSecs(3600 * hour);
                const QString text =
                    QStringLiteral("Tag %1 Stunde %2, und eine lange Zeile, die bleibt").arg(day).arg(hour);
                edit(poem, text);
                QVERIFY(PoemVersions::recordSessionEnd(context(), *poem));
                texts.insert(versionsOf(poem).front().number, text);
            }
        }
        QVERIFY(PoemVersions::saveByHand(context(), *poem, QStringLiteral("Erstfassung")));
        texts.insert(20, texts.value(19));
        QCOMPARE(versionsOf(poem).size(), size_t(20)); // the first state, 18 sessions, the named one
        m_now = start.addDays(60);
        const auto pruned = PoemVersions::pruneAll(context());
        QVERIFY(pruned);
        QCOMPARE(*pruned, 13); // two of three on each of the six days, and the first state of day one
        const QStringList kept = labels(versionsOf(poem));
        QCOMPARE(kept, QStringList({"20 Erstfassung", "19 Bearbeitung", "16 Bearbeitung", "13 Bearbeitung",
                                    "10 Bearbeitung", "7 Bearbeitung", "4 Bearbeitung"}));
        // Versions kept as edits of their neighbours still read back exactly.
        for (const PoemVersion &version : versionsOf(poem)) {
            const auto read = PoemVersions::version(context(), *poem, version.number);
            QVERIFY2(read, qPrintable(read.errorMessage()));
            QCOMPARE(read->values.text, texts.value(version.number));
        }
    }

    void byteDeltasGiveBackTheTarget_data()
    {
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("target");
        QTest::addColumn<int>("maxBytes"); // -1: kept whole
        QByteArray poem;
        for (int line = 0; line < 60; ++line)
            poem += "Zeile " + QByteArray::number(line) + " mit Wind und Wolken\\par\n";
        QByteArray changed = poem;
        changed.replace("Zeile 17 mit Wind", "Zeile 17 mit Regen");
        changed.replace("Zeile 40 mit", "Zeile vierzig ohne");
        QTest::newRow("a few words of a long poem") << poem << changed << 40;
        QTest::newRow("unchanged") << poem << poem << 8;
        QTest::newRow("last word without a break") << QByteArray("eins zwei drei") << QByteArray("eins zwei vier") << 8;
        QTest::newRow("from nothing") << QByteArray() << QByteArray("neu") << -1;
        QTest::newRow("to nothing") << poem << QByteArray() << -1;
        QTest::newRow("bytes of every kind")
            << QByteArray("\x00\xff \n\x80 x", 8) << QByteArray("\x00\xff \n\x81 x", 8) << -1;
    }

    void byteDeltasGiveBackTheTarget()
    {
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, target);
        QFETCH(int, maxBytes);
        const auto delta = ByteDelta::encode(base, target);
        QCOMPARE(delta.has_value(), maxBytes >= 0);
        if (!delta)
            return;
        QVERIFY2(delta->size() <= maxBytes, qPrintable(QString::number(delta->size())));
        QCOMPARE(ByteDelta::apply(base, *delta), std::optional<QByteArray>(target));
        QCOMPARE(ByteDelta::apply("mehr " + base, *delta), std::nullopt); // not the base it was made from
    }

    void sessionEndKeepsOnlyWhatChanged()
    {
        const PoemPtr poem = savedPoem(QStringLiteral("Erste Zeile"));
        EditingSession session(context());
        session.begin(poem);
        session.begin(nullptr); // looked at, not edited
        QVERIFY(versionsOf(poem).empty());

        session.begin(poem);
        edit(poem, QStringLiteral("Zweite Zeile"));
        edit(poem, QStringLiteral("Dritte Zeile"));
        QCOMPARE(labels(versionsOf(poem)), QStringList{"1 vor Bearbeitung"}); // typing keeps only the start
        session.end();
        QCOMPARE(labels(versionsOf(poem)), QStringList({"2 Bearbeitung", "1 vor Bearbeitung"}));
        const auto newest = PoemVersions::version(context(), *poem, 2);
        QVERIFY(newest);
        QCOMPARE(newest->values.text, QStringLiteral("Dritte Zeile"));
        QCOMPARE(newest->wordsAdded, 1);
        QCOMPARE(newest->wordsRemoved, 1);
        QVERIFY(!PoemVersions::recordSessionEnd(context(), *poem).value()); // the same text again
    }

    void idleEditorEndsTheSession()
    {
        const PoemPtr poem = savedPoem(QStringLiteral("Anfang"));
        EditingSession session(context());
        session.setIdleInterval(30);
        session.begin(poem);
        edit(poem, QStringLiteral("Anfang und mehr"));
        QTRY_COMPARE(versionsOf(poem).size(), size_t(2));
        QCOMPARE(versionsOf(poem).front().reason, QStringLiteral("Bearbeitung"));
    }

    void outsideOperationsKeepTheReplacedPoem_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QString>("reason");
        QTest::newRow("restore") << Operation([](ArchiveContext &c, const PoemPtr &poem, const QString &) {
            Backup backup = Backup::make({poem}, start).value();
            backup.poems.first().text = QStringLiteral("aus der Sicherung");
            QVERIFY(RestorePlanner::restore(backup, c, RestoreMode::addMissingAndUpdate));
        }) << "vor Wiederherstellung";
        QTest::newRow("text import") << Operation([](ArchiveContext &c, const PoemPtr &poem, const QString &) {
            QVERIFY(SinglePoemImport::apply(c, *poem, {QStringLiteral("importiert"), std::nullopt, {}},
                                            QStringLiteral("a.docx"), start));
        }) << "vor Textimport";
        QTest::newRow("folder import") << Operation([](ArchiveContext &c, const PoemPtr &poem, const QString &) {
            ImportApplier applier(c, [](const QList<ImportUndoItem> &) { return Result<void>(); });
            QVERIFY(applier.apply(*poem->id(), QStringLiteral("importiert"), std::nullopt, false).applied);
            QVERIFY(applier.finalize());
        }) << "vor Textimport";
        QTest::newRow("undo of an import") << Operation([](ArchiveContext &c, const PoemPtr &poem, const QString &) {
            QVERIFY(SinglePoemImport::apply(c, *poem, {QStringLiteral("importiert"), std::nullopt, {}},
                                            QStringLiteral("a.docx"), start));
            QVERIFY(ImportUndo::undoLastImport(c, start));
        }) << "vor Import rückgängig";
        QTest::newRow("CSV import") << Operation([](ArchiveContext &c, const PoemPtr &, const QString &dir) {
            const QString path = dir + QStringLiteral("/liste.csv");
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("titel;kategorie\nHerbst;Natur\n");
            file.close();
            QVERIFY(!CSVImporter::importGedichte(path, c, start).error);
        }) << "vor CSV-Import";
        QTest::newRow("category rename") << Operation([](ArchiveContext &c, const PoemPtr &, const QString &) {
            QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("Liebe")}).ok());
            QVERIFY(CategoryCatalog::renameCategory(c, QStringLiteral("Liebe"), QStringLiteral("Natur"), start));
        }) << "vor Umbenennen der Kategorie";
        QTest::newRow("category removal") << Operation([](ArchiveContext &c, const PoemPtr &, const QString &) {
            QVERIFY(AppPreferences::setPoemCategories({QStringLiteral("Liebe")}).ok());
            QVERIFY(CategoryCatalog::removeCategory(c, QStringLiteral("Liebe"), start).ok());
        }) << "vor Entfernen der Kategorie";
    }

    void outsideOperationsKeepTheReplacedPoem()
    {
        QFETCH(Operation, operation);
        QFETCH(QString, reason);
        const PoemPtr poem = savedPoem(QStringLiteral("Mein alter Text"), QStringLiteral("Liebe"));
        const PoemValues before = poem->values();
        operation(context(), poem, m_dir->path());
        QVERIFY(poem->values() != before);
        const auto versions = versionsOf(poem);
        QVERIFY(!versions.empty());
        QCOMPARE(versions.front().reason, reason);
        const auto kept = PoemVersions::version(context(), *poem, versions.front().number);
        QVERIFY(kept);
        // What the operation replaced, as it was right before it.
        const PoemValues &undone = versions.size() > 1 ? poem->values() : before;
        QCOMPARE(kept->values.category, versions.size() > 1 ? undone.category : before.category);
        if (versions.size() == 1)
            QCOMPARE(kept->values.text, before.text);
    }

    void restoringAVersionCanItselfBeUndone()
    {
        const PoemPtr poem = savedPoem(QStringLiteral("Fassung eins"));
        QVERIFY(PoemVersions::saveByHand(context(), *poem, QStringLiteral("Erstfassung")));
        edit(poem, QStringLiteral("Fassung zwei"));
        QVERIFY(PoemVersions::restore(context(), *poem, 1));
        QCOMPARE(poem->text(), QStringLiteral("Fassung eins"));
        const auto versions = versionsOf(poem);
        QCOMPARE(versions.front().reason, PoemVersions::restoreReason(1));
        QVERIFY(PoemVersions::restore(context(), *poem, versions.front().number));
        QCOMPARE(poem->text(), QStringLiteral("Fassung zwei"));
        QVERIFY(!PoemVersions::restore(context(), *poem, 99)); // unknown numbers change nothing
        QCOMPARE(poem->text(), QStringLiteral("Fassung zwei"));

        const auto copy = PoemVersions::copyAsNewPoem(context(), PoemVersions::version(context(), *poem, 1).value());
        QVERIFY(copy);
        QCOMPARE((*copy)->text(), QStringLiteral("Fassung eins"));
        QCOMPARE(poem->text(), QStringLiteral("Fassung zwei"));
    }

    void versionsKeepTheirPicturesUntilThePoemIsGone()
    {
        const QString path = m_store->storePath();
        const QByteArray picture = photo(20000, 7);
        const PoemPtr poem = context().insertPoem();
        poem->setId(QUuid::createUuid());
        poem->setText(QStringLiteral("Mit Bild"));
        poem->setRichTextData(rtfWithPhoto(picture, "Mit Bild"));
        QVERIFY(context().save());
        QVERIFY(PoemEdit::apply(
            context(), *poem,
            [](Poem &p) {
                p.setText(QStringLiteral("Ohne Bild"));
                p.setRichTextData(QByteArray("{\\rtf1\\ansi Ohne Bild}"));
            },
            m_now));
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1); // the first version still shows it
        QVERIFY(PoemVersions::restore(context(), *poem, 1));
        QCOMPARE(poem->richTextData(), rtfWithPhoto(picture, "Mit Bild"));
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1); // referenced again, not copied

        QVERIFY(PoemEdit::apply(
            context(), *poem, [this](Poem &p) { p.setDeletedAt(m_now); }, m_now));
        QVERIFY(Trash(context()).deletePermanently(poem));
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM poem_version"), 0);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM version_picture"), 0);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 0);
    }

    void twoWritersAppendWithoutLosingAVersion()
    {
        const PoemPtr poem = savedPoem(QStringLiteral("Geteilt"));
        auto other = PersistenceController::open(m_store->storePath());
        QVERIFY(other);
        const PoemPtr there = (*other)->viewContext().poemWithID(*poem->id());
        QVERIFY(there);
        for (int i = 0; i < 5; ++i) {
            QVERIFY(PoemVersions::saveByHand(context(), *poem, QStringLiteral("hier %1").arg(i)));
            QVERIFY(PoemVersions::saveByHand((*other)->viewContext(), *there, QStringLiteral("dort %1").arg(i)));
        }
        const auto seenThere = PoemVersions::list((*other)->viewContext(), *there);
        QVERIFY(seenThere);
        QCOMPARE(labels(*seenThere), labels(versionsOf(poem)));
        QCOMPARE(seenThere->size(), size_t(10));
        QCOMPARE(seenThere->front().number, 10);
    }

    void olderArchivesGainVersionsOnOpening()
    {
        m_store.reset();
        const QString path = m_dir->filePath(QStringLiteral("alt.sqlite"));
        {
            sqlite3 *db = nullptr;
            QCOMPARE(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
            for (const char *sql :
                 {"CREATE TABLE poem (pk INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT, title TEXT, "
                  "title_normalized TEXT, text TEXT, rich_text_data BLOB, category TEXT, date "
                  "INTEGER, writer_notes TEXT, is_published INTEGER NOT NULL DEFAULT 0, in_podcast "
                  "INTEGER NOT NULL DEFAULT 0, external_id TEXT, created_at INTEGER, updated_at "
                  "INTEGER, deleted_at INTEGER, change_seq INTEGER NOT NULL DEFAULT 0)",
                  "CREATE TABLE store_change (seq INTEGER NOT NULL)", "INSERT INTO store_change (seq) VALUES (0)",
                  "INSERT INTO poem (id, title, text) VALUES "
                  "('6F9619FF-8B86-D011-B42D-00C04FC964FF', 'Alt', 'alter Text')",
                  "PRAGMA user_version=3"})
                QCOMPARE(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK);
            sqlite3_close(db);
        }
        auto opened = PersistenceController::open(path);
        QVERIFY2(opened, qPrintable(opened.errorMessage()));
        ArchiveContext &c = (*opened)->viewContext();
        const PoemPtr poem = c.fetch().first();
        QVERIFY(PoemEdit::apply(
            c, *poem, [](Poem &p) { p.setText(QStringLiteral("neuer Text")); }, m_now));
        const auto first = PoemVersions::version(c, *poem, 1);
        QVERIFY(first);
        QCOMPARE(first->values.text, QStringLiteral("alter Text"));
    }
};

QTEST_GUILESS_MAIN(PoemVersionsTest)
#include "tst_poemversions.moc"
