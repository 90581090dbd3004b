#pragma once

#include "archive/LibraryRowListener.h"

#include <QAbstractListModel>

class LibraryBrowser;

// The library's rows for the list view. Rows are read from the browser when shown; a
// changed poem moves its one row, so the selection and scroll position stay.
class PoemListModel : public QAbstractListModel, public LibraryRowListener {
    Q_OBJECT

public:
    enum Role {
        ObjectIDRole = Qt::UserRole + 1,
        DateTextRole,
        CategoryRole,
        ExcerptRole,
        StatusTextRole,
        HasTextRole,
        PublishedRole,
        PodcastRole,
    };

    explicit PoemListModel(const LibraryBrowser &browser, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    // After LibraryBrowser::reloadRows().
    void rowsReloaded();

    void rowsAboutToBeReset() override { beginResetModel(); }
    void rowsReset() override { endResetModel(); }
    void rowAboutToBeInserted(qsizetype row) override { beginInsertRows({}, int(row), int(row)); }
    void rowInserted() override { endInsertRows(); }
    void rowAboutToBeRemoved(qsizetype row) override { beginRemoveRows({}, int(row), int(row)); }
    void rowRemoved() override { endRemoveRows(); }
    void rowAboutToBeMoved(qsizetype from, qsizetype before) override
    {
        beginMoveRows({}, int(from), int(from), {}, int(before));
    }
    void rowMoved() override { endMoveRows(); }
    void rowChanged(qsizetype row) override { Q_EMIT dataChanged(index(int(row)), index(int(row))); }

private:
    const LibraryBrowser &m_browser;
};
