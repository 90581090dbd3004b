#include "app/gui/PoemListModel.h"

#include "archive/LibraryBrowser.h"

PoemListModel::PoemListModel(const LibraryBrowser &browser, QObject *parent)
    : QAbstractListModel(parent), m_browser(browser)
{
}

int PoemListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_browser.rowCount());
}

QVariant PoemListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_browser.rowCount())
        return {};
    const PoemRow &row = m_browser.row(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return row.displayTitle();
    case Qt::ToolTipRole:
        return row.excerpt;
    case ObjectIDRole:
        return row.objectID;
    case DateTextRole:
        return row.dateText;
    case CategoryRole:
        return row.category.value_or(QString()).trimmed();
    case ExcerptRole:
        return row.excerpt;
    case StatusTextRole:
        return row.statusText;
    case HasTextRole:
        return row.hasText;
    case PublishedRole:
        return row.isPublished;
    case PodcastRole:
        return row.inPodcast;
    default:
        return {};
    }
}

void PoemListModel::rowsReloaded()
{
    beginResetModel();
    endResetModel();
}
