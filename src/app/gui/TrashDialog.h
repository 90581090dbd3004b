#pragma once

#include "archive/Trash.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

// The trash: most recently trashed first, each poem with "Wiederherstellen" and a button
// that deletes it for good after a confirmation; "Papierkorb leeren…" while not empty.
class TrashDialog : public QDialog {
    Q_OBJECT

public:
    TrashDialog(ArchiveContext &context, Trash::StatusCallback onStatus, QWidget *parent = nullptr);

    void reload();
    int shownCount() const { return int(m_shown.size()); }

    // The confirmations, asked through these so tests can answer them.
    std::function<bool(const QString &title, const QString &text, const QString &confirm)> confirm;

private:
    QWidget *makeRow(const PoemPtr &poem);
    void deletePermanently(const PoemPtr &poem);
    void emptyTrash();
    bool askUser(const QString &title, const QString &text, const QString &confirmText);

    Trash m_trash;
    bool m_reloadPending = false;
    QList<PoemPtr> m_shown;
    QLabel *m_count;
    QStackedWidget *m_pages;
    QWidget *m_rows;
    QVBoxLayout *m_rowsLayout;
    QPushButton *m_emptyButton;
};
