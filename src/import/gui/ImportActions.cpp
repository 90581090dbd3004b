#include "import/gui/ImportActions.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "import/ImportStateFiles.h"
#include "import/ImportUndo.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportReportWindow.h"
#include "import/gui/ImportReviewWindow.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

ImportActions::ImportActions(ArchiveContext &context, FolderScanController &scans, QWidget *window)
    : QObject(window), m_context(context), m_window(window), m_undo(new QAction(tr("Import rückgängig"), this)),
      m_report(new QAction(tr("Letzter Importbericht"), this))
{
    m_undo->setObjectName(QStringLiteral("undoImportAction"));
    m_undo->setToolTip(tr("Stellt die Gedichttexte vor dem letzten Import wieder her"));
    m_undo->setIcon(QIcon::fromTheme(QStringLiteral("edit-undo")));
    m_undo->setEnabled(false);
    m_report->setObjectName(QStringLiteral("importReportAction"));
    m_report->setToolTip(tr("Zeigt, was der letzte Import mit jeder Datei gemacht hat"));
    m_report->setIcon(QIcon::fromTheme(QStringLiteral("document-properties")));
    m_report->setEnabled(false);
    connect(m_undo, &QAction::triggered, this, &ImportActions::undoLastImport);
    connect(m_report, &QAction::triggered, this, &ImportActions::showLastReport);
    connect(&scans, &FolderScanController::reviewOpened, this, [this](ImportReviewWindow *review) {
        review->setImportAvailable(true);
        connect(review, &ImportReviewWindow::importRequested, this, [this, review] { startImport(review); });
    });
}

ImportActions::~ImportActions() = default;

void ImportActions::setUndoAvailable(bool available)
{
    m_undo->setEnabled(available);
}

void ImportActions::setReportAvailable(bool available)
{
    m_report->setEnabled(available);
}

void ImportActions::startImport(ImportReviewWindow *review)
{
    if (!review || (m_run && m_run->isRunning()))
        return;
    ImportRunSettings settings;
    settings.folder = review->folder();
    settings.proposals = review->proposals();
    settings.unreadableFiles = review->unreadableFiles();
    settings.options = review->options();
    settings.imagesOnly = review->imagesOnly();
    if (m_readers > 0)
        settings.readers = m_readers;
    m_run = std::make_unique<ImportRun>(m_context, std::move(settings));
    ImportRun *run = m_run.get();
    const QPointer<ImportReviewWindow> reviewWindow(review);
    connect(run, &ImportRun::statusChanged, this, [this, reviewWindow](const QString &text) {
        if (reviewWindow)
            reviewWindow->setStatusText(text);
        Q_EMIT statusChanged(text);
    });
    connect(run, &ImportRun::progressChanged, this, [reviewWindow](const QString &text, int done, int total) {
        if (reviewWindow)
            reviewWindow->setProgress(text, done, total);
    });
    connect(review, &ImportReviewWindow::cancelRequested, run, &ImportRun::cancel);
    connect(run, &ImportRun::finished, this, [this, reviewWindow] { finishRun(reviewWindow); });
    review->setImporting(true);
    Q_EMIT busyChanged(true);
    run->start();
}

void ImportActions::finishRun(ImportReviewWindow *review)
{
    Q_EMIT busyChanged(false);
    if (review) {
        review->setImporting(false);
        // One import per review: the proposals now describe texts that are in place.
        review->setImportAvailable(false);
    }
    if (!m_run->hasApplied())
        return;
    // The review is done with; left open, a window-modal review keeps the report from input.
    if (review)
        review->accept();
    setUndoAvailable(ImportStateFiles::hasPendingUndo());
    setReportAvailable(true);
    presentReport(m_run->report(), m_run->logText());
}

void ImportActions::presentReport(const ImportReport &report, const QString &technicalDetails)
{
    if (m_reportWindow)
        m_reportWindow->close();
    auto *window = new ImportReportWindow(report, technicalDetails, m_window);
    window->setAttribute(Qt::WA_DeleteOnClose);
    m_reportWindow = window;
    window->show();
}

void ImportActions::showLastReport()
{
    const auto report = ImportStateFiles::loadReport();
    if (!report) {
        setReportAvailable(false);
        Q_EMIT statusChanged(tr("Kein Importbericht vorhanden."));
        return;
    }
    presentReport(*report, ImportStateFiles::loadFailureLog());
}

void ImportActions::undoLastImport()
{
    if (m_run && m_run->isRunning())
        return;
    const auto undone = ImportUndo::undoLastImport(m_context);
    setUndoAvailable(ImportStateFiles::hasPendingUndo());
    Q_EMIT statusChanged(undone ? *undone : undone.errorMessage());
}

QString ImportActions::chooseTextFile()
{
    const QString start = AppPreferences::resolvedFolder(FolderKind::documentImport).value_or(QDir::homePath());
    return QFileDialog::getOpenFileName(m_window, tr("Text importieren"), start, SinglePoemImport::fileDialogFilter());
}

bool ImportActions::confirmReplace()
{
    QMessageBox box(QMessageBox::Question, tr("Text importieren"), SinglePoemImport::replaceQuestion(),
                    QMessageBox::NoButton, m_window);
    box.setInformativeText(tr("Der bisherige Text lässt sich mit „Import rückgängig“ zurückholen."));
    QPushButton *replace = box.addButton(tr("Ersetzen"), QMessageBox::AcceptRole);
    box.addButton(tr("Abbrechen"), QMessageBox::RejectRole);
    box.setDefaultButton(replace);
    box.exec();
    return box.clickedButton() == replace;
}

void ImportActions::importTextInto(const PoemPtr &poem)
{
    if (!poem || m_singleImportRunning || (m_run && m_run->isRunning()))
        return;
    const QString path = chooseTextFile();
    if (path.isEmpty())
        return;
    if (!poem->text().value_or(QString()).trimmed().isEmpty() && !confirmReplace())
        return;
    const QString fileName = QFileInfo(path).fileName();
    if (SinglePoemImport::isTextFile(path)) {
        finishSingleImport(poem, SinglePoemImport::readTextFile(path), fileName);
        return;
    }
    m_singleImportRunning = true;
    Q_EMIT busyChanged(true);
    const ImportedRichText::EditorFont defaults = ImportedRichText::EditorFont::current();
    IsolatedDocumentExtractor::extractAsync(
        path, IsolatedDocumentExtractor::defaultTimeoutMilliseconds(path), this,
        [this, poem, fileName, defaults](IsolatedExtraction extraction) {
            m_singleImportRunning = false;
            Q_EMIT busyChanged(false);
            finishSingleImport(poem, SinglePoemImport::fromExtraction(extraction, defaults), fileName);
        });
}

void ImportActions::finishSingleImport(const PoemPtr &poem, const Result<ImportedPoemText> &imported,
                                       const QString &fileName)
{
    // The poem may have gone to the trash's final deletion while the helper read.
    if (!poem->context()) {
        Q_EMIT statusChanged(tr("Text konnte nicht importiert werden: %1").arg(tr("Das Gedicht ist nicht mehr da.")));
        return;
    }
    if (!imported) {
        Q_EMIT statusChanged(tr("Text konnte nicht importiert werden: %1").arg(imported.errorMessage()));
        return;
    }
    const auto applied = SinglePoemImport::apply(m_context, *poem, *imported, fileName);
    if (!applied) {
        Q_EMIT statusChanged(tr("Text konnte nicht importiert werden: %1").arg(applied.errorMessage()));
        return;
    }
    setUndoAvailable(true);
    Q_EMIT statusChanged(*applied);
}
