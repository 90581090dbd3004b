#include "app/gui/PoemListPane.h"

#include "app/gui/PoemListModel.h"
#include "app/gui/PoemListView.h"
#include "app/gui/PoemRowDelegate.h"
#include "app/gui/ThemeIcon.h"
#include "archive/LibraryBrowser.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

PoemListPane::PoemListPane(PoemListModel *model, QWidget *parent)
    : QWidget(parent), m_model(model), m_search(new QLineEdit(this)), m_mode(new QComboBox(this)),
      m_sort(new QToolButton(this)), m_sortGroup(new QActionGroup(this)), m_summary(new QLabel(this)),
      m_hint(new QLabel(LibraryBrowser::missingTextHint(), this)), m_stack(new QStackedWidget(this)),
      m_list(new PoemListView(this)), m_emptyTitle(new QLabel(this)), m_emptyText(new QLabel(this))
{
    setObjectName(QStringLiteral("listPane"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto *header = new QWidget(this);
    header->setObjectName(QStringLiteral("listHeader"));
    auto *headerLayout = new QVBoxLayout(header);
    headerLayout->setContentsMargins(12, 10, 12, 8);
    headerLayout->setSpacing(6);

    auto *searchRow = new QHBoxLayout;
    searchRow->setSpacing(6);
    m_search->setObjectName(QStringLiteral("searchField"));
    m_search->setPlaceholderText(tr("Suchen"));
    m_search->setClearButtonEnabled(true);
    m_search->addAction(ThemeIcon::named(QStringLiteral("system-search")), QLineEdit::LeadingPosition);
    connect(m_search, &QLineEdit::textChanged, this, &PoemListPane::searchTextChanged);
    searchRow->addWidget(m_search, 1);

    m_mode->setObjectName(QStringLiteral("searchModePicker"));
    m_mode->setToolTip(tr("Suchen in"));
    for (const SearchMode mode : allSearchModes)
        m_mode->addItem(displayTitle(mode), int(mode));
    connect(m_mode, &QComboBox::activated, this,
            [this](int index) { Q_EMIT searchModeChanged(SearchMode(m_mode->itemData(index).toInt())); });
    searchRow->addWidget(m_mode);
    headerLayout->addLayout(searchRow);

    auto *summaryRow = new QHBoxLayout;
    summaryRow->setSpacing(6);
    m_summary->setObjectName(QStringLiteral("resultSummary"));
    // Beside the sort button in a narrow column the count wraps rather than losing its end.
    m_summary->setWordWrap(true);
    summaryRow->addWidget(m_summary, 1);
    auto *sortMenu = new QMenu(m_sort);
    for (const PoemSortMode mode : allPoemSortModes) {
        QAction *action = sortMenu->addAction(displayTitle(mode));
        action->setCheckable(true);
        action->setData(int(mode));
        m_sortGroup->addAction(action);
    }
    connect(m_sortGroup, &QActionGroup::triggered, this, [this](QAction *action) {
        m_sort->setText(action->text());
        Q_EMIT sortModeChanged(PoemSortMode(action->data().toInt()));
    });
    m_sort->setObjectName(QStringLiteral("sortButton"));
    m_sort->setMenu(sortMenu);
    m_sort->setPopupMode(QToolButton::InstantPopup);
    m_sort->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_sort->setIcon(ThemeIcon::named(QStringLiteral("view-sort-descending")));
    m_sort->setAutoRaise(true);
    m_sort->setToolTip(tr("Sortieren nach"));
    summaryRow->addWidget(m_sort);
    headerLayout->addLayout(summaryRow);

    m_hint->setObjectName(QStringLiteral("scopeHint"));
    m_hint->setWordWrap(true);
    m_hint->hide();
    headerLayout->addWidget(m_hint);
    layout->addWidget(header);

    m_list->setObjectName(QStringLiteral("poemList"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(new PoemRowDelegate(m_list));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QListView::customContextMenuRequested, this, &PoemListPane::showContextMenu);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex &current) {
        if (m_announceSelection && current.isValid())
            Q_EMIT rowSelected(current.data(PoemListModel::ObjectIDRole).toString());
    });
    connect(m_list, &QListView::activated, this, [this] { Q_EMIT openRequested(); });

    auto *empty = new QWidget(this);
    auto *emptyLayout = new QVBoxLayout(empty);
    emptyLayout->setContentsMargins(24, 24, 24, 24);
    emptyLayout->addStretch(1);
    m_emptyTitle->setObjectName(QStringLiteral("emptyTitle"));
    m_emptyTitle->setAlignment(Qt::AlignCenter);
    m_emptyText->setObjectName(QStringLiteral("emptyText"));
    m_emptyText->setAlignment(Qt::AlignCenter);
    m_emptyText->setWordWrap(true);
    emptyLayout->addWidget(m_emptyTitle);
    emptyLayout->addWidget(m_emptyText);
    emptyLayout->addStretch(2);

    m_stack->addWidget(m_list);
    m_stack->addWidget(empty);
    layout->addWidget(m_stack, 1);
}

void PoemListPane::setSearchMode(SearchMode mode)
{
    m_mode->setCurrentIndex(m_mode->findData(int(mode)));
}

void PoemListPane::setSortMode(PoemSortMode mode)
{
    for (QAction *action : m_sortGroup->actions()) {
        if (action->data().toInt() == int(mode)) {
            action->setChecked(true);
            m_sort->setText(action->text());
        }
    }
}

void PoemListPane::showSummary(bool shown, const QString &text)
{
    m_summary->setText(shown ? text : QString());
}

void PoemListPane::showMissingTextHint(bool shown)
{
    m_hint->setVisible(shown);
}

void PoemListPane::selectRow(int row)
{
    m_announceSelection = false;
    if (row < 0) {
        m_list->selectionModel()->clear();
    } else {
        const QModelIndex index = m_model->index(row);
        m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    }
    m_announceSelection = true;
}

void PoemListPane::focusSearch()
{
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

void PoemListPane::refreshEmptyState(bool archiveIsEmpty)
{
    const bool empty = m_model->rowCount() == 0;
    m_stack->setCurrentIndex(empty ? 1 : 0);
    if (!empty)
        return;
    if (archiveIsEmpty) {
        m_emptyTitle->setText(tr("Noch keine Gedichte"));
        m_emptyText->setText(tr("Lege mit „Neues Gedicht“ dein erstes Gedicht an."));
    } else if (!m_search->text().trimmed().isEmpty()) {
        m_emptyTitle->setText(tr("Keine Treffer"));
        m_emptyText->setText(tr("Kein Gedicht passt zu „%1“.").arg(m_search->text().trimmed()));
    } else {
        m_emptyTitle->setText(tr("Keine Gedichte in dieser Ansicht"));
        m_emptyText->clear();
    }
}

QString PoemListPane::currentObjectID() const
{
    const QModelIndex current = m_list->currentIndex();
    return current.isValid() ? current.data(PoemListModel::ObjectIDRole).toString() : QString();
}

void PoemListPane::showContextMenu(const QPoint &position)
{
    const QModelIndex index = m_list->indexAt(position);
    if (!index.isValid())
        return;
    const QString objectID = index.data(PoemListModel::ObjectIDRole).toString();
    QMenu menu(this);
    menu.addAction(ThemeIcon::named(QStringLiteral("edit-copy")), tr("Duplizieren"), this,
                   [this, objectID] { Q_EMIT duplicateRequested(objectID); });
    menu.addSeparator();
    menu.addAction(ThemeIcon::named(QStringLiteral("user-trash")), tr("In den Papierkorb legen"), this,
                   [this, objectID] { Q_EMIT trashRequested(objectID); });
    menu.exec(m_list->viewport()->mapToGlobal(position));
}
