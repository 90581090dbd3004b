#pragma once

#include "backup/RestoreMode.h"
#include "backup/RestorePreview.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <optional>

class ArchiveContext;
class QAction;
class QWidget;

// The library window's backup flows: the manual backup, the restore with its preview
// sheet, and the daily backup at start. Everything reports through statusChanged; a
// written backup file through fileWritten, for the window's "show in file manager".
// Restored poems reach the views through the context's change notice.
//
//   auto *backups = new BackupActions(context, window);
//   window->addSidebarAction(backups->createBackupAction());
//   window->addSidebarAction(backups->restoreAction());
//   connect(backups, &BackupActions::statusChanged, window, &MainWindow::setStatus);
//   connect(backups, &BackupActions::fileWritten, window, &MainWindow::setLastWrittenFile);
//   connect(backups, &BackupActions::busyChanged, window, &MainWindow::setBusy);
//   connect(window, &MainWindow::dailyBackupDue, backups, &BackupActions::runDailyBackupIfDue);
class BackupActions : public QObject {
    Q_OBJECT

public:
    BackupActions(ArchiveContext &context, QWidget *window);

    // "Backup erstellen" and "Wiederherstellen", owned by this object.
    QAction *createBackupAction() const { return m_createBackup; }
    QAction *restoreAction() const { return m_restore; }

    using Clock = std::function<QDateTime()>;
    void setClock(Clock clock) { m_clock = std::move(clock); }

public Q_SLOTS:
    void createBackup();
    void restoreBackup();
    // The restore from a known file (a safety backup): preview, confirmation, restore.
    void restoreFrom(const QString &path);
    void runDailyBackupIfDue();

Q_SIGNALS:
    void statusChanged(const QString &text);
    void fileWritten(const QString &path);
    void busyChanged(bool busy);

protected:
    // The dialogs, one function each so that they can be replaced where no one clicks.
    // An empty path or no mode means the user cancelled.
    virtual QString chooseBackupDestination(const QString &proposedPath);
    virtual QString chooseBackupToRestore(const QString &folder);
    virtual std::optional<RestoreMode> confirmRestore(const RestorePreview &preview, const QString &path);

private:
    QString rememberedFolder() const;
    void rememberFolderOf(const QString &filePath);
    void setBusy(bool busy);

    ArchiveContext &m_context;
    QWidget *m_window;
    QAction *m_createBackup;
    QAction *m_restore;
    Clock m_clock;
};
