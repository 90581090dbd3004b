#pragma once

#include "editor/WritingStats.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QToolButton;

// The four counts under the poem text, and the save status.
class WritingStatsBar : public QWidget {
    Q_OBJECT

public:
    explicit WritingStatsBar(QWidget *parent = nullptr);

    void setStats(const WritingStats &stats);
    void setSaveStatus(const QString &status);
    // Off where the surrounding view shows the save status itself.
    void setSaveStatusShown(bool shown);
    // The poem's metre and how many lines break it; empty hides it.
    void setMeter(const QString &meter, const QString &breaking, int breakingCount);
    // The full sentence, also where the bar shows it shortened.
    QString meterText() const;

Q_SIGNALS:
    // The metre was clicked: mark the lines that break it, or stop marking them.
    void meterClicked(bool marked);

public:
    QString badgeText(int index) const;
    // Badges per row: all four where they fit, else two, so no count is ever cut off.
    int badgesPerRow() const { return m_badgesPerRow; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitBadges();
    void fitMeter();
    void arrangeBadges(int perRow);
    int oneRowWidth() const;

    QGridLayout *m_grid;
    QList<QLabel *> m_badges;
    QLabel *m_saveStatus;
    QToolButton *m_meter;
    QString m_meterName;
    QString m_breakingLines;
    int m_breakingCount = 0;
    int m_badgesPerRow = 0;
};
