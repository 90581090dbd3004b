#pragma once

#include <QListView>

// The library list. Every row has the same height, so a row whose text changed keeps its
// place and size: QListView would lay out every row again for it, which at 100,000 poems
// costs more than the keystroke that changed the row.
class PoemListView : public QListView {
    Q_OBJECT

public:
    explicit PoemListView(QWidget *parent = nullptr);

protected:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles = QList<int>()) override;
};
