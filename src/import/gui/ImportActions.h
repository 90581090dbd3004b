#pragma once

#include "archive/Poem.h"
#include "import/ImportRun.h"
#include "import/SinglePoemImport.h"

#include <QObject>
#include <QPointer>

#include <memory>

class ArchiveContext;
class FolderScanController;
class ImportReviewWindow;
class QAction;
class QWidget;

// The library window's import flows after a scan: running the import from the review
// (with progress and cancel), the report window, "Import rückgängig", and the single-poem
// "Text importieren…". Outcomes go out through statusChanged, like every archive-wide
// operation.
class ImportActions : public QObject {
    Q_OBJECT

public:
    ImportActions(ArchiveContext &context, FolderScanController &scans, QWidget *window);
    ~ImportActions() override;

    QAction *undoAction() const { return m_undo; }
    QAction *reportAction() const { return m_report; }
    // The run in progress or the last one, until the next starts.
    ImportRun *run() const { return m_run.get(); }
    // For tests and scripts: the window that opened last.
    QWidget *reportWindow() const { return m_reportWindow; }
    // Parallel readers of the next run; 0 means one per core.
    void setReaders(int readers) { m_readers = readers; }

public Q_SLOTS:
    void startImport(ImportReviewWindow *review);
    void undoLastImport();
    void showLastReport();
    void importTextInto(const PoemPtr &poem);
    // Start-up: whether the state files of the last import are there.
    void setUndoAvailable(bool available);
    void setReportAvailable(bool available);

Q_SIGNALS:
    void statusChanged(const QString &text);
    void busyChanged(bool busy);

protected:
    // Dialogs, replaceable where no one clicks. Empty path: cancelled.
    virtual QString chooseTextFile();
    virtual bool confirmReplace();
    virtual void presentReport(const ImportReport &report, const QString &technicalDetails);

private:
    void finishRun(ImportReviewWindow *review);
    void finishSingleImport(const PoemPtr &poem, const Result<ImportedPoemText> &imported, const QString &fileName);

    ArchiveContext &m_context;
    QPointer<QWidget> m_window;
    QAction *m_undo;
    QAction *m_report;
    std::unique_ptr<ImportRun> m_run;
    QPointer<QWidget> m_reportWindow;
    int m_readers = 0;
    bool m_singleImportRunning = false;
};
