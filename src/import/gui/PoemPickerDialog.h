#pragma once

#include "matching/PoemSnapshotEntry.h"

#include <QDialog>

#include <optional>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

// "Gedicht auswählen": every live poem of the archive, narrowed by a search on the title.
class PoemPickerDialog : public QDialog {
    Q_OBJECT

public:
    PoemPickerDialog(QList<PoemSnapshotEntry> poems, QWidget *parent = nullptr);

    // The id text of the poem picked, once the dialog was accepted.
    std::optional<QString> pickedPoemObjectURI() const;
    void setSearchText(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applySearch(const QString &text);
    void updateAcceptButton();

    QLineEdit *m_search;
    QListWidget *m_list;
    QPushButton *m_pickButton;
    QLabel *m_count;
};
