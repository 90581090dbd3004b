#include "backup/gui/BackupActions.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/PoemStore.h"
#include "backup/BackupExporter.h"
#include "backup/BackupStatus.h"
#include "backup/DailyBackup.h"
#include "backup/RestorePlanner.h"
#include "backup/gui/BackupRestoreDialog.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>

namespace {

// Shows the busy state while a synchronous step runs on the main thread.
class BusyScope {
public:
    explicit BusyScope(std::function<void(bool)> setBusy) : m_setBusy(std::move(setBusy)) { m_setBusy(true); }
    ~BusyScope() { m_setBusy(false); }
    BusyScope(const BusyScope &) = delete;
    BusyScope &operator=(const BusyScope &) = delete;

private:
    std::function<void(bool)> m_setBusy;
};

} // namespace

BackupActions::BackupActions(ArchiveContext &context, QWidget *window)
    : QObject(window), m_context(context), m_window(window), m_clock([] { return QDateTime::currentDateTime(); })
{
    m_createBackup = new QAction(QIcon::fromTheme(QStringLiteral("document-save")), tr("Backup erstellen"), this);
    m_createBackup->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_B));
    m_createBackup->setStatusTip(tr("Alle Gedichte einschließlich Papierkorb in eine Backup-Datei sichern"));
    connect(m_createBackup, &QAction::triggered, this, &BackupActions::createBackup);

    m_restore = new QAction(QIcon::fromTheme(QStringLiteral("document-revert")), tr("Wiederherstellen"), this);
    m_restore->setStatusTip(tr("Gedichte aus einer Backup-Datei ergänzen oder aktualisieren"));
    m_restore->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_W));
    connect(m_restore, &QAction::triggered, this, &BackupActions::restoreBackup);
    m_restore->setEnabled(!m_context.store().isReadOnly());
}

void BackupActions::createBackup()
{
    const QDateTime now = m_clock();
    const QString proposed = rememberedFolder() + QLatin1Char('/') + BackupExporter::manualBackupFileName(now);
    const QString path = chooseBackupDestination(proposed);
    if (path.isEmpty()) {
        Q_EMIT statusChanged(BackupStatus::backupCancelled());
        return;
    }
    Result<int> written = Error{};
    {
        const BusyScope busy([this](bool on) { setBusy(on); });
        written = BackupExporter::writeBackup(m_context.fetch(), path, now);
    }
    if (!written) {
        Q_EMIT statusChanged(BackupStatus::backupFailed(written.errorMessage()));
        return;
    }
    rememberFolderOf(path);
    Q_EMIT fileWritten(path);
    Q_EMIT statusChanged(BackupStatus::backupCreated(*written, path));
}

void BackupActions::restoreBackup()
{
    const QString path = chooseBackupToRestore(rememberedFolder());
    if (path.isEmpty()) {
        Q_EMIT statusChanged(BackupStatus::restoreCancelled());
        return;
    }
    rememberFolderOf(path);
    restoreFrom(path);
}

void BackupActions::restoreFrom(const QString &path)
{
    Result<RestorePreview> preview = Error{};
    {
        const BusyScope busy([this](bool on) { setBusy(on); });
        preview = RestorePlanner::previewRestore(path, m_context.fetch());
    }
    if (!preview) {
        Q_EMIT statusChanged(BackupStatus::backupUnreadable(preview.errorMessage()));
        return;
    }
    const std::optional<RestoreMode> mode = confirmRestore(*preview, path);
    if (!mode) {
        Q_EMIT statusChanged(BackupStatus::restoreCancelled());
        return;
    }
    Result<RestoreOutcome> restored = Error{};
    {
        const BusyScope busy([this](bool on) { setBusy(on); });
        restored = RestorePlanner::restoreWithSafetyBackup(preview->backup, m_context, *mode, m_clock());
    }
    if (!restored) {
        Q_EMIT statusChanged(BackupStatus::restoreAborted(restored.errorMessage()));
        return;
    }
    Q_EMIT statusChanged(
        BackupStatus::restoreFinished(restored->counts.created, restored->counts.updated, restored->safetyBackupPath));
}

void BackupActions::runDailyBackupIfDue()
{
    DailyBackup::Outcome outcome;
    {
        const BusyScope busy([this](bool on) { setBusy(on); });
        outcome = DailyBackup::runDailyAutomaticBackupIfNeeded(m_context, m_clock());
    }
    if (outcome.status == DailyBackup::Status::written)
        Q_EMIT fileWritten(outcome.path);
    if (!outcome.statusLine.isEmpty())
        Q_EMIT statusChanged(outcome.statusLine);
}

QString BackupActions::chooseBackupDestination(const QString &proposedPath)
{
    QFileDialog dialog(m_window, tr("OdeLeaf-Backup speichern"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(tr("JSON-Dateien (*.json)"));
    dialog.setDefaultSuffix(QStringLiteral("json"));
    dialog.setDirectory(QFileInfo(proposedPath).absolutePath());
    dialog.selectFile(QFileInfo(proposedPath).fileName());
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

QString BackupActions::chooseBackupToRestore(const QString &folder)
{
    return QFileDialog::getOpenFileName(m_window, tr("OdeLeaf-Backup auswählen"), folder,
                                        tr("JSON-Dateien (*.json);;Alle Dateien (*)"));
}

std::optional<RestoreMode> BackupActions::confirmRestore(const RestorePreview &preview, const QString &path)
{
    BackupRestoreDialog dialog(preview, QFileInfo(path).fileName(), m_window);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.chosenMode();
}

QString BackupActions::rememberedFolder() const
{
    if (const auto folder = AppPreferences::resolvedFolder(FolderKind::backup))
        return *folder;
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void BackupActions::rememberFolderOf(const QString &filePath)
{
    AppPreferences::saveFolder(QFileInfo(filePath).absolutePath(), FolderKind::backup);
}

void BackupActions::setBusy(bool busy)
{
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
    m_createBackup->setEnabled(!busy);
    m_restore->setEnabled(!busy && !m_context.store().isReadOnly());
    Q_EMIT busyChanged(busy);
}
