#include "ImportTestSupport.h"
#include "backup/BackupTestSupport.h"

#include "import/ImportStateFiles.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportActions.h"
#include "import/gui/ImportReportWindow.h"
#include "import/gui/ImportReviewWindow.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

using namespace ImportTestSupport;
using BackupTestSupport::TestArchive;

namespace {

// The dialogs answered the way a test wants.
class ScriptedImportActions : public ImportActions {
public:
    using ImportActions::ImportActions;
    QString file;
    bool replace = true;
    int reportsShown = 0;

protected:
    QString chooseTextFile() override { return file; }
    bool confirmReplace() override { return replace; }
    void presentReport(const ImportReport &report, const QString &details) override
    {
        ++reportsShown;
        ImportActions::presentReport(report, details);
    }
};

QPushButton *buttonWithText(const QWidget &parent, const QString &text)
{
    for (QPushButton *button : parent.findChildren<QPushButton *>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

} // namespace

class ImportActionsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;
    std::unique_ptr<QWidget> m_window;
    QList<PoemPtr> m_poems;

    FolderScanOutcome scanOfFiveDocuments()
    {
        FolderScanOutcome scan;
        scan.folder = m_archive->path(QStringLiteral("Texte"));
        QDir().mkpath(scan.folder);
        for (int i = 0; i < 5; ++i) {
            const QString name = QStringLiteral("Gedicht %1.docx").arg(i);
            writeDocx(QDir(scan.folder).filePath(name), {QStringLiteral("neu %1").arg(i)});
            scan.proposals.append(proposalFor(name, m_poems.at(i)));
        }
        scan.scannedFilesCount = 5;
        return scan;
    }

private Q_SLOTS:
    void init()
    {
        m_archive = std::make_unique<TestArchive>();
        m_window = std::make_unique<QWidget>();
        m_poems.clear();
        for (int i = 0; i < 5; ++i)
            m_poems.append(addPoem(m_archive->context(), QStringLiteral("Gedicht %1").arg(i)));
        QVERIFY(m_archive->context().save().ok());
    }

    void cleanup()
    {
        m_window.reset();
        m_archive.reset();
    }

    void reviewRunsTheImportShowsTheReportAndUndoes()
    {
        FolderScanController scans(m_archive->context(), m_window.get());
        ScriptedImportActions actions(m_archive->context(), scans, m_window.get());
        QSignalSpy status(&actions, &ImportActions::statusChanged);
        QVERIFY(!actions.undoAction()->isEnabled() && !actions.reportAction()->isEnabled());
        ImportReviewWindow review(m_archive->context(), scanOfFiveDocuments(), m_window.get());
        actions.startImport(&review);
        QVERIFY(review.isImporting());
        QVERIFY(!buttonWithText(review, QStringLiteral("Abbrechen"))->isHidden());
        QTRY_VERIFY_WITH_TIMEOUT(!actions.run()->isRunning(), 30000);

        QVERIFY(!review.isImporting());
        QCOMPARE(m_poems.at(4)->text(), QStringLiteral("neu 4"));
        QVERIFY(status.last().first().toString().startsWith(QStringLiteral("Import fertig (2-Phasen): 5 gesetzt")));
        QCOMPARE(actions.reportsShown, 1);
        auto *report = qobject_cast<ImportReportWindow *>(actions.reportWindow());
        QVERIFY(report);
        QCOMPARE(report->findChild<QLabel *>(QStringLiteral("reportHeadline"))->text(),
                 QStringLiteral("Import abgeschlossen"));
        QCOMPARE(report->findChild<QLabel *>(QStringLiteral("reportCheckedFiles"))->text(),
                 QStringLiteral("5 Dateien geprüft"));
        QCOMPARE(report->itemTable()->rowCount(), 5);
        QCOMPARE(report->itemTable()->item(0, 0)->text(), QStringLiteral("Übernommen"));
        QVERIFY(report->detailsView()->isHidden());
        report->detailsToggle()->click();
        QVERIFY(!report->detailsView()->isHidden());
        QVERIFY(report->detailsView()->toPlainText().startsWith(QStringLiteral("OdeLeaf import failures – ")) ||
                report->detailsView()->toPlainText().isEmpty());

        QVERIFY(actions.undoAction()->isEnabled() && actions.reportAction()->isEnabled());
        actions.reportAction()->trigger();
        QCOMPARE(actions.reportsShown, 2);
        actions.undoAction()->trigger();
        QCOMPARE(status.last().first().toString(),
                 QStringLiteral("Letzter Import rückgängig gemacht: 5 Gedichte wiederhergestellt."));
        QVERIFY(!m_poems.at(4)->text());
        QVERIFY(!actions.undoAction()->isEnabled());
    }

    // Driven as the poet drives it: a shown window, the review opened by a scan, mouse clicks.
    void theReportOfARunTakesClicksAtOnce_data()
    {
        QTest::addColumn<int>("cancelAfter");
        QTest::addColumn<QString>("headline");
        QTest::addColumn<int>("items");
        QTest::newRow("finished") << 0 << QStringLiteral("Import abgeschlossen") << 5;
        QTest::newRow("cancelled") << 2 << QStringLiteral("Import abgebrochen") << 2;
    }

    void theReportOfARunTakesClicksAtOnce()
    {
        QFETCH(int, cancelAfter);
        QFETCH(QString, headline);
        QFETCH(int, items);
        m_window->resize(640, 480);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        FolderScanController scans(m_archive->context(), m_window.get());
        ScriptedImportActions actions(m_archive->context(), scans, m_window.get());
        actions.setReaders(1);
        QPointer<ImportReviewWindow> review;
        connect(&scans, &FolderScanController::reviewOpened, this,
                [&review](ImportReviewWindow *opened) { review = opened; });
        scans.startFolderScan(scanOfFiveDocuments().folder, false);
        QTRY_VERIFY_WITH_TIMEOUT(review, 20000);
        QVERIFY(QTest::qWaitForWindowExposed(review));

        QTest::mouseClick(buttonWithText(*review, QStringLiteral("Importieren")), Qt::LeftButton);
        QVERIFY(actions.run() && review->isImporting());
        if (cancelAfter > 0) {
            connect(actions.run(), &ImportRun::progressChanged, this,
                    [&review, cancelAfter](const QString &, int done) {
                        if (done == cancelAfter && review)
                            QTest::mouseClick(buttonWithText(*review, QStringLiteral("Abbrechen")), Qt::LeftButton);
                    });
        }
        QTRY_VERIFY_WITH_TIMEOUT(!actions.run()->isRunning(), 30000);
        QCOMPARE(actions.run()->wasCancelled(), cancelAfter > 0);
        QTRY_VERIFY(!review);
        const auto written = std::count_if(m_poems.begin(), m_poems.end(), [](const PoemPtr &poem) {
            return poem->text().value_or(QString()).startsWith(QStringLiteral("neu "));
        });
        QCOMPARE(int(written), items);

        QPointer<QWidget> report = actions.reportWindow();
        QVERIFY(report && QTest::qWaitForWindowExposed(report));
        QCOMPARE(report->findChild<QLabel *>(QStringLiteral("reportHeadline"))->text(), headline);
        QCOMPARE(qobject_cast<ImportReportWindow *>(report)->itemTable()->rowCount(), items);
        QTest::mouseClick(report->findChild<QPushButton *>(QStringLiteral("closeReportButton")), Qt::LeftButton);
        QTRY_VERIFY(!report);
    }

    void theReportShowsEveryReasonWhole()
    {
        const QString reason = QStringLiteral("Text konnte nicht extrahiert werden ") + QString(300, QLatin1Char('.'));
        const ImportReport report{QDateTime::currentDateTimeUtc(),
                                  QStringLiteral("Letzter Textimport"),
                                  QStringLiteral("Import fertig"),
                                  {{ImportReport::Status::failed, "a.docx", "Abend", reason},
                                   {ImportReport::Status::imported, "b.docx", "Morgen", std::nullopt}}};
        ImportReportWindow window(report, QStringLiteral("OdeLeaf import failures – x"));
        QCOMPARE(window.itemTable()->item(0, 3)->toolTip(), reason);
        QCOMPARE(window.detailsView()->toPlainText(),
                 QStringLiteral("OdeLeaf import failures – x\n\nGründe:\na.docx → Abend: ") + reason);
    }

    void singlePoemImportAsksBeforeReplacing()
    {
        FolderScanController scans(m_archive->context(), m_window.get());
        ScriptedImportActions actions(m_archive->context(), scans, m_window.get());
        QSignalSpy status(&actions, &ImportActions::statusChanged);
        const PoemPtr poem = m_poems.first();
        actions.file = m_archive->path(QStringLiteral("gedicht.txt"));
        QVERIFY(writeFile(actions.file, "Erste Zeile\nZweite Zeile\n"));
        actions.importTextInto(poem);
        QCOMPARE(poem->text(), QStringLiteral("Erste Zeile\nZweite Zeile"));
        QCOMPARE(status.last().first().toString(),
                 QStringLiteral("Text importiert aus gedicht.txt. Rückgängig ist im Hauptfenster verfügbar."));
        QVERIFY(actions.undoAction()->isEnabled());

        actions.replace = false;
        QVERIFY(writeFile(actions.file, "anders"));
        actions.importTextInto(poem);
        QCOMPARE(poem->text(), QStringLiteral("Erste Zeile\nZweite Zeile"));

        actions.replace = true;
        actions.file = QStringLiteral(ODELEAF_TEST_DATA "/import/Nur-Bild.pdf");
        actions.importTextInto(poem);
        QTRY_VERIFY_WITH_TIMEOUT(
            status.last().first().toString().startsWith(QStringLiteral("Text konnte nicht importiert werden: ")),
            20000);
        QCOMPARE(poem->text(), QStringLiteral("Erste Zeile\nZweite Zeile"));
    }
};

QTEST_MAIN(ImportActionsTest)
#include "tst_importactions.moc"
