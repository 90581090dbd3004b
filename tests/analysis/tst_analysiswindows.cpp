#include "analysis/gui/AnalysisActions.h"
#include "analysis/gui/DuplicateReportWindow.h"
#include "analysis/gui/StatisticsWindow.h"
#include "app/gui/ArchiveOperations.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemListPane.h"
#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "export/OdeLeafReaderPackageCodec.h"
#include "export/gui/ReaderPackageAction.h"
#include "matching/TitleKey.h"

#include <QAction>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

namespace {

// The save dialogs answer with a fixed path; empty stands for cancelling.
class AnsweredStatisticsWindow : public StatisticsWindow {
public:
    AnsweredStatisticsWindow(const StatisticsReport &report, QString answer)
        : StatisticsWindow(report), m_answer(std::move(answer))
    {
    }

protected:
    QString chooseJsonDestination(const QString &) override { return m_answer; }
    QString choosePdfDestination(const QString &) override { return m_answer; }

private:
    QString m_answer;
};

class AnsweredReaderPackageAction : public ReaderPackageAction {
public:
    AnsweredReaderPackageAction(ArchiveContext &context, QString answer)
        : ReaderPackageAction(context, nullptr), m_answer(std::move(answer))
    {
    }
    QString proposed;

protected:
    QString chooseDestination(const QString &proposedPath) override
    {
        proposed = proposedPath;
        return m_answer;
    }

private:
    QString m_answer;
};

QTreeWidgetItem *findItem(QTreeWidget *tree, const QString &text)
{
    const QList<QTreeWidgetItem *> found = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.first();
}

} // namespace

class AnalysisWindowsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;

    ArchiveContext &context() { return m_store->viewContext(); }

    PoemPtr storedPoem(const QString &title, const QString &category = {})
    {
        PoemPtr poem = PoemFactory::makeNewPoem(context(), QDateTime::currentDateTimeUtc().addDays(-1));
        poem->setTitle(title);
        poem->setTitleNormalized(normalize(title));
        poem->setText(QStringLiteral("Zeilen von ") + title);
        if (!category.isEmpty())
            poem->setCategory(category);
        if (!context().save())
            qWarning("could not store the sample poem");
        return poem;
    }

private Q_SLOTS:
    void initTestCase() { ApplicationSupport::setDirectory(m_dir.path()); }

    void init()
    {
        QFile::remove(m_dir.filePath(QStringLiteral("analysis.sqlite")));
        m_store = std::move(PersistenceController::open(m_dir.filePath(QStringLiteral("analysis.sqlite"))).value());
    }

    void cleanup() { m_store.reset(); }

    void duplicateReportLeadsToThePoemInTheLibrary()
    {
        storedPoem(QStringLiteral("Abendlied"), QStringLiteral("Lyrik"));
        const PoemPtr copy = storedPoem(QStringLiteral("ABENDLIED!"));
        storedPoem(QStringLiteral("Winter"), QStringLiteral("Lyrik"));
        MainWindow window(context());
        auto *operations = new ArchiveOperations(window);
        window.show();
        QTRY_VERIFY(window.hasStarted());

        QStringList archiveMenu;
        for (QAction *action : window.menuBar()->actions()) {
            if (action->text() == QStringLiteral("&Archiv")) {
                for (QAction *entry : action->menu()->actions())
                    archiveMenu.append(entry->text());
            }
        }
        QVERIFY(archiveMenu.contains(QStringLiteral("Duplikate prüfen")));
        QVERIFY(archiveMenu.contains(QStringLiteral("Statistik")));
        QVERIFY(archiveMenu.contains(QStringLiteral("Reader-Paket exportieren…")));

        // A search that hides the poem: showing it steps out of the search.
        window.listPane()->searchField()->setText(QStringLiteral("Winter"));
        QVERIFY(window.library().indexOfObjectID(copy->objectID()) < 0);

        operations->analysis()->duplicateCheckAction()->trigger();
        QCOMPARE(window.statusText(), QStringLiteral("Duplikatprüfung: 1 gleiche Titel, 0 ähnliche Titel gefunden."));
        DuplicateReportWindow *report = operations->analysis()->duplicateReportWindow();
        QVERIFY(report && report->isVisible());
        QVERIFY(report->findChild<QLabel *>(QStringLiteral("reportSummary"))
                    ->text()
                    .startsWith(QStringLiteral("3 Gedichte geprüft.")));
        QTreeWidgetItem *item = findItem(report->findingsTree(), QStringLiteral("ABENDLIED!"));
        QVERIFY(item);
        QVERIFY(!report->showInLibraryButton()->isEnabled());
        report->findingsTree()->setCurrentItem(item);
        QVERIFY(report->showInLibraryButton()->isEnabled());
        report->showInLibraryButton()->click();

        QCOMPARE(window.selectedPoem(), copy);
        QVERIFY(window.listPane()->searchField()->text().isEmpty());
        QVERIFY(window.library().indexOfObjectID(copy->objectID()) >= 0);

        // Checking again replaces the window rather than stacking a second one.
        operations->analysis()->duplicateCheckAction()->trigger();
        QTRY_COMPARE(window.findChildren<DuplicateReportWindow *>().size(), 1);

        // The open report follows the archive, quietly: a renamed copy is no duplicate.
        const QString status = window.statusText();
        copy->setTitle(QStringLiteral("Nachtlied"));
        copy->setTitleNormalized(normalize(QStringLiteral("Nachtlied")));
        QVERIFY(context().save().ok());
        QTRY_VERIFY(operations->analysis()->duplicateReportWindow() &&
                    !operations->analysis()->duplicateReportWindow()->findingsTree());
        QTRY_COMPARE(window.findChildren<DuplicateReportWindow *>().size(), 1);
        QCOMPARE(window.statusText(), status);
    }

    void reportWithoutFindingsSaysSo()
    {
        DuplicateCheckReport empty;
        empty.poemCount = 2;
        DuplicateReportWindow window(empty);
        QVERIFY(!window.findingsTree());
        QStringList texts;
        for (const QLabel *label : window.findChildren<QLabel *>())
            texts.append(label->text());
        QVERIFY(texts.contains(QStringLiteral("Keine Auffälligkeiten gefunden")));
        QVERIFY(texts.contains(QStringLiteral("Die Prüfung hat keine gleichen oder sehr ähnlichen Titel gefunden.")));
    }

    void statisticsWindowSavesAndReports()
    {
        storedPoem(QStringLiteral("Abendlied"), QStringLiteral("Lyrik"));
        const StatisticsReport report = StatisticsReport::make(context().fetch());
        const QString json = m_dir.filePath(QStringLiteral("statistik.json"));
        AnsweredStatisticsWindow window(report, json);
        QSignalSpy status(&window, &StatisticsWindow::statusChanged);
        window.saveJson();
        QCOMPARE(status.takeFirst().at(0).toString(), QStringLiteral("Statistik gespeichert: statistik.json"));
        QFile file(json);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("gedichteGesamt")).toInt(), 1);
        QCOMPARE(window.categoryTable()->topLevelItemCount(), 1);

        AnsweredStatisticsWindow failing(report, QStringLiteral("/proc/odeleaf/statistik.pdf"));
        QSignalSpy failed(&failing, &StatisticsWindow::statusChanged);
        failing.savePdf();
        QVERIFY(failed.takeFirst().at(0).toString().startsWith(
            QStringLiteral("Statistik-PDF konnte nicht gespeichert werden: ")));

        AnsweredStatisticsWindow cancelled(report, QString());
        QSignalSpy quiet(&cancelled, &StatisticsWindow::statusChanged);
        cancelled.saveJson();
        QVERIFY(quiet.isEmpty());
    }

    void readerPackageActionWritesOrReportsTheCancel()
    {
        storedPoem(QStringLiteral("Abendlied"));
        storedPoem(QStringLiteral("Winter"))->setDeletedAt(QDateTime::currentDateTimeUtc());
        QVERIFY(context().save());

        AnsweredReaderPackageAction cancelled(context(), QString());
        QSignalSpy cancelStatus(&cancelled, &ReaderPackageAction::statusChanged);
        cancelled.exportPackage();
        QCOMPARE(cancelStatus.takeFirst().at(0).toString(), QStringLiteral("Reader-Paket abgebrochen."));
        QVERIFY(cancelled.proposed.contains(QStringLiteral("/OdeLeaf-Reader-")));
        QVERIFY(cancelled.proposed.endsWith(QStringLiteral(".odeleafreader")));

        const QString path = m_dir.filePath(QStringLiteral("lesen.odeleafreader"));
        AnsweredReaderPackageAction action(context(), path);
        QSignalSpy status(&action, &ReaderPackageAction::statusChanged);
        QSignalSpy written(&action, &ReaderPackageAction::fileWritten);
        action.exportPackage();
        QCOMPARE(status.takeFirst().at(0).toString(),
                 QStringLiteral("Reader-Paket erstellt: 1 Gedicht gespeichert. Datei: lesen.odeleafreader"));
        QCOMPARE(written.takeFirst().at(0).toString(), path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto package = OdeLeafReaderPackageCodec::decode(file.readAll());
        QVERIFY(package);
        QCOMPARE(package->poems.size(), 1);
    }
};

QTEST_MAIN(AnalysisWindowsTest)
#include "tst_analysiswindows.moc"
