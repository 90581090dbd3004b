#include "app/gui/ArchiveOperations.h"
#include "app/gui/LibrarySidebar.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemListPane.h"
#include "app/gui/StatusPanel.h"
#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/MessageText.h"
#include "archive/PersistenceController.h"
#include "backup/BackupTestSupport.h"
#include "import/gui/CSVImportActions.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Answers the file dialog with a fixed path; empty means cancelled.
class ScriptedCsvImport : public CSVImportActions {
public:
    using CSVImportActions::CSVImportActions;
    QString answer;
    QString askedIn;

protected:
    QString chooseFile(const QString &folder) override
    {
        askedIn = folder;
        return answer;
    }
};

} // namespace

class CsvImportActionsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;

    QString writeCsv(const QString &name, const QByteArray &bytes)
    {
        return BackupTestSupport::writeFileIn(m_dir.path(), name, bytes);
    }

private Q_SLOTS:
    void init()
    {
        ApplicationSupport::setDirectory(m_dir.filePath(QStringLiteral("OdeLeaf")));
        QVERIFY(ApplicationSupport::ensureDirectory().ok());
        QFile::remove(ApplicationSupport::preferencesPath());
        m_store = PersistenceController::inMemory();
    }

    void cleanup() { m_store.reset(); }

    void cancelReportsAndChosenFileImportsFromTheRememberedFolder()
    {
        QWidget window;
        ScriptedCsvImport actions(m_store->viewContext(), &window);
        QSignalSpy status(&actions, &CSVImportActions::statusChanged);
        QSignalSpy changed(&m_store->viewContext(), &ArchiveContext::contextDidChange);

        actions.importAction()->trigger();
        QCOMPARE(status.takeLast().at(0).toString(), QStringLiteral("CSV-Auswahl abgebrochen."));
        QCOMPARE(changed.size(), 0);
        // The first dialog opens in a folder that exists.
        QVERIFY2(QFileInfo(actions.askedIn).isDir(), qPrintable(actions.askedIn));

        actions.answer = writeCsv(QStringLiteral("liste.csv"), "Gedicht;Podcast\nSturm;x\n");
        actions.importAction()->trigger();
        QVERIFY(actions.isReading() && !actions.importAction()->isEnabled());
        QTRY_VERIFY(!status.isEmpty());
        QVERIFY(status.takeLast().at(0).toString().startsWith(QStringLiteral("CSV Import: 1 neu, 0 aktualisiert")));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(AppPreferences::resolvedFolder(FolderKind::csv), m_dir.path());
        QVERIFY(actions.importAction()->isEnabled());

        actions.answer.clear();
        actions.importAction()->trigger();
        QCOMPARE(actions.askedIn, m_dir.path());
    }

    void theWindowOffersTheImportAndRebuildsItsList()
    {
        MainWindow window(m_store->viewContext());
        new ArchiveOperations(window);
        window.show();

        QAction *action = window.findChild<QAction *>(QStringLiteral("csvImportAction"));
        QVERIFY(action);
        QVERIFY(window.fileMenu()->actions().contains(action));
        const QList<QAction *> menu = window.fileMenu()->actions();
        QVERIFY(menu.indexOf(action) < menu.size() - 1); // above "Beenden"
        QStringList labels;
        for (auto *button : window.sidebar()->findChildren<QAbstractButton *>())
            labels.append(button->text());
        QVERIFY(labels.contains(QStringLiteral("CSV-Datei importieren")));

        auto *csv = window.findChild<CSVImportActions *>();
        csv->importFile(writeCsv(QStringLiteral("liste.csv"), "Titel,Kategorie\nAbendlied,Natur\nMorgenlied,\n"));
        QTRY_VERIFY(!csv->isReading());
        QVERIFY2(window.statusText().startsWith(QStringLiteral("CSV Import: 2 neu")), qPrintable(window.statusText()));
        QCOMPARE(window.sidebar()->statusPanel()->status(), window.statusText());
        QCOMPARE(window.listPane()->listView()->model()->rowCount(), 2);
        QVERIFY(!window.isBusy());

        // One line of a million columns: read while the window goes on taking events, and
        // its megabytes of diagnostics shown cut.
        QByteArray wide;
        for (int column = 0; column < 1'000'000; ++column)
            wide += "Spalte" + QByteArray::number(column) + ';';
        csv->importFile(writeCsv(QStringLiteral("breit.csv"), wide));
        QVERIFY(window.isBusy());
        int turns = 0;
        while (csv->isReading() && turns < 100000) {
            QTest::qWait(5);
            ++turns;
        }
        QVERIFY2(turns > 0, "the window took no events while the file was read");
        QTRY_VERIFY(!window.isBusy());
        QVERIFY2(window.statusText().startsWith(QStringLiteral("CSV Fehler: Keine Datenzeilen.")),
                 qPrintable(window.statusText().left(200)));
        const auto *shown = window.sidebar()->statusPanel()->findChild<QLabel *>(QStringLiteral("statusText"));
        QVERIFY(shown->text().size() <= MessageText::statusLimit);
    }
};

QTEST_MAIN(CsvImportActionsTest)
#include "tst_csvimportactions.moc"
