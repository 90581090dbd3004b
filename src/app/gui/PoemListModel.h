#pragma once

#include <QAbstractListModel>

class LibraryBrowser;

// The library's rows for the list view. Rows are read from the browser when shown.
class PoemListModel : public QAbstractListModel {
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

private:
    const LibraryBrowser &m_browser;
};
