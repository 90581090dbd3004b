#include "editor/gui/WritingStatsBar.h"

#include "editor/AppTheme.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

WritingStatsBar::WritingStatsBar(QWidget *parent)
    : QWidget(parent), m_grid(new QGridLayout(this)), m_saveStatus(new QLabel(this)), m_meter(new QToolButton(this))
{
    m_meter->setObjectName(QStringLiteral("meterButton"));
    m_meter->setAutoRaise(true);
    m_meter->setCheckable(true);
    m_meter->hide();
    connect(m_meter, &QToolButton::toggled, this, &WritingStatsBar::meterClicked);
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
    fitMeter();
}

// Where the full sentence has no room the count shortens to its number and the metre is cut
// off at its end; the tooltip keeps the sentence.
void WritingStatsBar::fitMeter()
{
    int room = width() - m_grid->contentsMargins().left() - m_grid->contentsMargins().right();
    for (int i = 0; i < m_badgesPerRow && i < m_badges.size(); ++i)
        room -= m_badges.at(i)->sizeHint().width() + m_grid->horizontalSpacing();
    if (m_badgesPerRow == m_badges.size() && m_saveStatus->isVisibleTo(this))
        room -= m_saveStatus->sizeHint().width();
    const QString full =
        m_breakingLines.isEmpty() ? m_meterName : QStringLiteral("%1 · %2").arg(m_meterName, m_breakingLines);
    const QFontMetrics metrics = m_meter->fontMetrics();
    const int padding = 16;
    QString shown = full;
    if (metrics.horizontalAdvance(full) + padding > room) {
        const QString count = m_breakingLines.isEmpty() ? QString() : QStringLiteral(" · %1").arg(m_breakingCount);
        const int nameRoom = std::max(0, room - padding - metrics.horizontalAdvance(count));
        shown = metrics.elidedText(m_meterName, Qt::ElideRight, nameRoom) + count;
    }
    m_meter->setText(shown);
    m_meter->setToolTip(m_breakingLines.isEmpty() ? full
                                                  : tr("%1. Klicken markiert die abweichenden Verse.").arg(full));
}

int WritingStatsBar::oneRowWidth() const
{
    int total = m_grid->contentsMargins().left() + m_grid->contentsMargins().right();
    for (const QLabel *badge : m_badges)
        total += badge->sizeHint().width() + m_grid->horizontalSpacing();
    if (m_saveStatus->isVisibleTo(this))
        total += m_saveStatus->sizeHint().width();
    if (m_meter->isVisibleTo(this))
        total += m_meter->sizeHint().width() + m_grid->horizontalSpacing();
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
    m_grid->removeWidget(m_meter);
    for (int i = 0; i < m_badges.size(); ++i)
        m_grid->addWidget(m_badges.at(i), i / perRow, i % perRow);
    for (int column = 0; column <= 5; ++column)
        m_grid->setColumnStretch(column, column == perRow + 1 ? 1 : 0);
    // Beside the second row of badges where they wrap, so the metre gets room of its own.
    m_grid->addWidget(m_meter, perRow < m_badges.size() ? 1 : 0, perRow, Qt::AlignLeft | Qt::AlignVCenter);
    m_grid->addWidget(m_saveStatus, 0, perRow + 1, Qt::AlignRight | Qt::AlignVCenter);
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

void WritingStatsBar::setMeter(const QString &meter, const QString &breaking, int breakingCount)
{
    m_meterName = meter;
    m_breakingLines = breaking;
    m_breakingCount = breakingCount;
    m_meter->setEnabled(!breaking.isEmpty());
    if (breaking.isEmpty())
        m_meter->setChecked(false);
    m_meter->setVisible(!meter.isEmpty());
    // The badges may no longer fit in one row beside it.
    m_badgesPerRow = 0;
    fitBadges();
}

QString WritingStatsBar::meterText() const
{
    return m_meter->isVisibleTo(this) ? m_meter->toolTip() : QString();
}

void WritingStatsBar::setSaveStatusShown(bool shown)
{
    m_saveStatus->setVisible(shown);
}

QString WritingStatsBar::badgeText(int index) const
{
    return m_badges.value(index) ? m_badges.value(index)->text() : QString();
}
