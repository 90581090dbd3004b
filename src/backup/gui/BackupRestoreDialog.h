#pragma once

#include "backup/RestoreMode.h"
#include "backup/RestorePreview.h"

#include <QDialog>

#include <optional>

class QPushButton;

// The sheet "Backup wiederherstellen": what a restore would change, and the choice of how.
class BackupRestoreDialog : public QDialog {
    Q_OBJECT

public:
    BackupRestoreDialog(const RestorePreview &preview, const QString &fileName, QWidget *parent = nullptr);

    // Empty when the dialog was cancelled.
    std::optional<RestoreMode> chosenMode() const { return m_mode; }

    QPushButton *missingOnlyButton() const { return m_missingOnly; }
    QPushButton *primaryButton() const { return m_primary; }

private:
    void choose(RestoreMode mode);

    std::optional<RestoreMode> m_mode;
    QPushButton *m_missingOnly = nullptr;
    QPushButton *m_primary = nullptr;
};
