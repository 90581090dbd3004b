#include "editor/gui/WritingStatsBar.h"

#include "editor/AppTheme.h"

#include <QGridLayout>
#include <QLabel>

WritingStatsBar::WritingStatsBar(QWidget *parent)
    : QWidget(parent), m_grid(new QGridLayout(this)), m_saveStatus(new QLabel(this))
{
    setObjectName(QStringLiteral("writingStatsBar"));
    m_grid->setContentsMargins(12, 5, 12, 5);
    m_grid->setHorizontalSpacing(6);
    m_grid->setVerticalSpacing(4);
    for (int i = 0; i < 4; ++i) {
        auto *badge = new QLabel(this);
        badge->setObjectName(QStringLiteral("statsBadge"));
        badge->setStyleSheet(QStringLiteral("QLabel#statsBadge { border-radius: 9px; padding: 2px 9px; "
                                            "background: rgba(179, 144, 67, 38); }"));
        m_badges.append(badge);
    }
    m_saveStatus->setObjectName(QStringLiteral("saveStatus"));
    QPalette muted = m_saveStatus->palette();
    muted.setColor(QPalette::WindowText, AppTheme::secondaryLabel());
    m_saveStatus->setPalette(muted);
    // The bar takes the width it is given and wraps its badges instead of widening the column.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setStats(WritingStats());
}

void WritingStatsBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitBadges();
}

void WritingStatsBar::fitBadges()
{
    arrangeBadges(width() >= oneRowWidth() ? int(m_badges.size()) : 2);
}

int WritingStatsBar::oneRowWidth() const
{
    int total = m_grid->contentsMargins().left() + m_grid->contentsMargins().right();
    for (const QLabel *badge : m_badges)
        total += badge->sizeHint().width() + m_grid->horizontalSpacing();
    if (m_saveStatus->isVisibleTo(this))
        total += m_saveStatus->sizeHint().width();
    return total;
}

void WritingStatsBar::arrangeBadges(int perRow)
{
    if (perRow == m_badgesPerRow)
        return;
    m_badgesPerRow = perRow;
    for (QLabel *badge : m_badges)
        m_grid->removeWidget(badge);
    m_grid->removeWidget(m_saveStatus);
    for (int i = 0; i < m_badges.size(); ++i)
        m_grid->addWidget(m_badges.at(i), i / perRow, i % perRow);
    for (int column = 0; column <= 4; ++column)
        m_grid->setColumnStretch(column, column == perRow ? 1 : 0);
    m_grid->addWidget(m_saveStatus, 0, perRow, Qt::AlignRight | Qt::AlignVCenter);
    updateGeometry();
}

void WritingStatsBar::setStats(const WritingStats &stats)
{
    const QList<QPair<QString, int>> counts = {{tr("Wörter"), stats.words},
                                               {tr("Zeichen"), stats.characters},
                                               {tr("Zeilen"), stats.lines},
                                               {tr("Strophen"), stats.stanzas}};
    for (qsizetype i = 0; i < counts.size(); ++i)
        m_badges.at(i)->setText(QStringLiteral("%1 <b>%2</b>").arg(counts.at(i).first).arg(counts.at(i).second));
    fitBadges();
}

void WritingStatsBar::setSaveStatus(const QString &status)
{
    m_saveStatus->setText(status);
}

void WritingStatsBar::setSaveStatusShown(bool shown)
{
    m_saveStatus->setVisible(shown);
}

QString WritingStatsBar::badgeText(int index) const
{
    return m_badges.value(index) ? m_badges.value(index)->text() : QString();
}
