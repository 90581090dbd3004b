#pragma once

#include "backup/SafetyBackupFolder.h"

#include <QDialog>

#include <functional>

class QLabel;
class QPushButton;
class QStackedWidget;
class QTreeWidget;

// "Sicherheitsbackups": every copy the program wrote before a restore, an import or as
// the daily backup, newest first, with restore, reveal and delete. Restoring and
// revealing are the window's callers' business (restoreRequested, revealRequested).
class SafetyBackupWindow : public QDialog {
    Q_OBJECT

public:
    explicit SafetyBackupWindow(SafetyBackupFolder folder, QWidget *parent = nullptr);

    void reload();
    const QList<SafetyBackupFile> &files() const { return m_files; }
    // The highlighted file; empty when nothing is selected.
    std::optional<SafetyBackupFile> selectedFile() const;
    void selectFile(int row);
    QTreeWidget *list() const { return m_list; }
    QPushButton *restoreButton() const { return m_restore; }
    QPushButton *revealButton() const { return m_reveal; }
    QPushButton *deleteButton() const { return m_delete; }

    // The confirmation before deleting, asked through this so tests can answer it.
    std::function<bool(const SafetyBackupFile &file)> confirmDeletion;

Q_SIGNALS:
    void restoreRequested(const QString &path);
    void revealRequested(const QString &path);
    void statusChanged(const QString &text);

private:
    void updateButtons();
    void deleteSelected();
    bool askDeletion(const SafetyBackupFile &file);

    SafetyBackupFolder m_folder;
    QList<SafetyBackupFile> m_files;
    QLabel *m_summary;
    QStackedWidget *m_pages;
    QTreeWidget *m_list;
    QPushButton *m_restore;
    QPushButton *m_reveal;
    QPushButton *m_delete;
};
