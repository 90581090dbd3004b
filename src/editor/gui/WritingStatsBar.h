#pragma once

#include "editor/WritingStats.h"

#include <QWidget>

class QLabel;

// The four counts under the poem text, and the save status.
class WritingStatsBar : public QWidget {
    Q_OBJECT

public:
    explicit WritingStatsBar(QWidget *parent = nullptr);

    void setStats(const WritingStats &stats);
    void setSaveStatus(const QString &status);
    // Off where the surrounding view shows the save status itself.
    void setSaveStatusShown(bool shown);
    QString badgeText(int index) const;

private:
    QList<QLabel *> m_badges;
    QLabel *m_saveStatus;
};
