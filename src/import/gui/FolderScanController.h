#pragma once

#include "import/FolderScan.h"

#include <QObject>
#include <QPointer>

class ArchiveContext;
class ImportReviewWindow;
class QAction;
class QThread;
class QWidget;

// Starts a folder scan from the library window: asks for the folder, scans and matches it
// on a worker thread while the window stays responsive, reports each stage as a status
// line and opens the review. The library window puts the two actions into its sidebar and
// shows statusChanged() in its status panel and busyChanged() as its progress indicator.
class FolderScanController : public QObject {
    Q_OBJECT

public:
    FolderScanController(ArchiveContext &context, QWidget *window);
    ~FolderScanController() override;

    QAction *textScanAction() const { return m_textScanAction; }
    QAction *imageScanAction() const { return m_imageScanAction; }
    bool isScanning() const { return m_worker != nullptr; }
    // The review of the last scan while it is open.
    ImportReviewWindow *review() const { return m_review; }

    // Asks for a folder, starting in the remembered one, and scans it.
    void chooseFolderAndScan(bool imagesOnly);
    // Scans without asking; the folder is remembered once the scan has succeeded.
    void startFolderScan(const QString &folder, bool imagesOnly);

Q_SIGNALS:
    void statusChanged(const QString &status);
    void busyChanged(bool busy);
    // The scan is done and its review is open; the import connects here.
    void reviewOpened(ImportReviewWindow *review);

private:
    void finishScan(const FolderScanOutcome &outcome);
    void setBusy(bool busy);

    ArchiveContext &m_context;
    QPointer<QWidget> m_window;
    QAction *m_textScanAction;
    QAction *m_imageScanAction;
    QThread *m_worker = nullptr;
    QPointer<ImportReviewWindow> m_review;
};
