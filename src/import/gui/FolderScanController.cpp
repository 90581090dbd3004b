#include "import/gui/FolderScanController.h"

#include "archive/AppPreferences.h"
#include "import/PoemSnapshot.h"
#include "import/gui/ImportReviewWindow.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QThread>
#include <QWidget>

FolderScanController::FolderScanController(ArchiveContext &context, QWidget *window)
    : QObject(window), m_context(context), m_window(window), m_textScanAction(new QAction(tr("Ordner scan"), this)),
      m_imageScanAction(new QAction(tr("Bilder-Ordner scan"), this))
{
    m_textScanAction->setToolTip(tr("Texte aus einem Ordner mit DOCX- und PDF-Dateien den Gedichten zuordnen"));
    m_imageScanAction->setToolTip(tr("Bilder aus einem Ordner mit PNG- und JPEG-Dateien den Gedichten zuordnen"));
    m_textScanAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I));
    m_imageScanAction->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_I));
    m_textScanAction->setIcon(QIcon::fromTheme(QStringLiteral("folder-open")));
    m_imageScanAction->setIcon(
        QIcon::fromTheme(QStringLiteral("folder-pictures"), QIcon::fromTheme(QStringLiteral("image-x-generic"))));
    connect(m_textScanAction, &QAction::triggered, this, [this] { chooseFolderAndScan(false); });
    connect(m_imageScanAction, &QAction::triggered, this, [this] { chooseFolderAndScan(true); });
}

FolderScanController::~FolderScanController()
{
    // The worker reports to this object; it has to be done before this goes.
    if (m_worker)
        m_worker->wait();
}

void FolderScanController::chooseFolderAndScan(bool imagesOnly)
{
    if (isScanning())
        return;
    const QString start = AppPreferences::resolvedFolder(FolderKind::documentImport).value_or(QDir::homePath());
    const QString caption = imagesOnly ? tr("Ordner mit Bildern wählen") : tr("Ordner mit Gedichttexten wählen");
    const QString folder = QFileDialog::getExistingDirectory(m_window, caption, start);
    if (folder.isEmpty())
        return;
    startFolderScan(folder, imagesOnly);
}

void FolderScanController::startFolderScan(const QString &folder, bool imagesOnly)
{
    if (isScanning())
        return;
    setBusy(true);
    Q_EMIT statusChanged(FolderScan::scanningText());
    Q_EMIT statusChanged(FolderScan::snapshotText());
    // The archive is read here, on the main thread; the worker sees plain values only.
    const QList<PoemSnapshotEntry> snapshot = livePoemSnapshot(m_context);

    m_worker = QThread::create([this, folder, snapshot, imagesOnly] {
        const auto report = [this](const QString &status) {
            QMetaObject::invokeMethod(
                this, [this, status] { Q_EMIT statusChanged(status); }, Qt::QueuedConnection);
        };
        const FolderScanOutcome outcome = FolderScan::run(folder, snapshot, imagesOnly, report);
        QMetaObject::invokeMethod(
            this, [this, outcome] { finishScan(outcome); }, Qt::QueuedConnection);
    });
    m_worker->setObjectName(QStringLiteral("FolderScan"));
    connect(m_worker, &QThread::finished, m_worker, &QObject::deleteLater);
    m_worker->start(QThread::LowPriority);
}

void FolderScanController::finishScan(const FolderScanOutcome &outcome)
{
    if (m_worker) {
        m_worker->wait();
        m_worker = nullptr;
    }
    setBusy(false);
    const QFileInfo folder(outcome.folder);
    if (!folder.isDir() || !folder.isReadable()) {
        Q_EMIT statusChanged(tr("Ordner-Bookmark fehlgeschlagen: %1").arg(tr("Der Ordner ist nicht mehr lesbar.")));
        return;
    }
    AppPreferences::saveFolder(outcome.folder, FolderKind::documentImport);
    Q_EMIT statusChanged(outcome.summary());

    if (m_review)
        m_review->close();
    auto *review = new ImportReviewWindow(m_context, outcome, m_window);
    review->setAttribute(Qt::WA_DeleteOnClose);
    review->setWindowModality(Qt::WindowModal);
    m_review = review;
    review->open();
    Q_EMIT reviewOpened(review);
}

void FolderScanController::setBusy(bool busy)
{
    m_textScanAction->setEnabled(!busy);
    m_imageScanAction->setEnabled(!busy);
    Q_EMIT busyChanged(busy);
}
