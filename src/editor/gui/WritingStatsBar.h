#pragma once

#include "editor/WritingStats.h"

#include <QWidget>

class QGridLayout;
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
    // Badges per row: all four where they fit, else two, so no count is ever cut off.
    int badgesPerRow() const { return m_badgesPerRow; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitBadges();
    void arrangeBadges(int perRow);
    int oneRowWidth() const;

    QGridLayout *m_grid;
    QList<QLabel *> m_badges;
    QLabel *m_saveStatus;
    int m_badgesPerRow = 0;
};
