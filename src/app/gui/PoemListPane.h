#pragma once

#include "archive/PoemSortMode.h"
#include "archive/SearchMode.h"

#include <QWidget>

#include <optional>

class QActionGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QStackedWidget;
class QToolButton;
class PoemListModel;

// The middle column: the search field with its mode, the sort menu, the summary line
// and the list of poems with its context menu.
class PoemListPane : public QWidget {
    Q_OBJECT

public:
    PoemListPane(PoemListModel *model, QWidget *parent = nullptr);

    void setSearchMode(SearchMode mode);
    void setSortMode(PoemSortMode mode);
    void showSummary(bool shown, const QString &text);
    void showMissingTextHint(bool shown);
    // Selects the row without announcing it; -1 clears the selection.
    void selectRow(int row);
    void focusSearch();
    QLineEdit *searchField() const { return m_search; }
    QListView *listView() const { return m_list; }
    void refreshEmptyState(bool archiveIsEmpty);

Q_SIGNALS:
    void searchTextChanged(const QString &text);
    void searchModeChanged(SearchMode mode);
    void sortModeChanged(PoemSortMode mode);
    void rowSelected(const QString &objectID);
    void duplicateRequested(const QString &objectID);
    void trashRequested(const QString &objectID);
    void openRequested();

private:
    void showContextMenu(const QPoint &position);
    QString currentObjectID() const;

    PoemListModel *m_model;
    QLineEdit *m_search;
    QComboBox *m_mode;
    QToolButton *m_sort;
    QActionGroup *m_sortGroup;
    QLabel *m_summary;
    QLabel *m_hint;
    QStackedWidget *m_stack;
    QListView *m_list;
    QLabel *m_emptyTitle;
    QLabel *m_emptyText;
    bool m_announceSelection = true;
};
