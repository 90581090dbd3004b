#include "editor/gui/WritingStatsBar.h"

#include "editor/AppTheme.h"

#include <QHBoxLayout>
#include <QLabel>

WritingStatsBar::WritingStatsBar(QWidget *parent) : QWidget(parent), m_saveStatus(new QLabel(this))
{
    setObjectName(QStringLiteral("writingStatsBar"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 5, 12, 5);
    layout->setSpacing(6);
    for (int i = 0; i < 4; ++i) {
        auto *badge = new QLabel(this);
        badge->setObjectName(QStringLiteral("statsBadge"));
        badge->setStyleSheet(QStringLiteral("QLabel#statsBadge { border-radius: 9px; padding: 2px 9px; "
                                            "background: rgba(179, 144, 67, 38); }"));
        m_badges.append(badge);
        layout->addWidget(badge);
    }
    layout->addStretch(1);
    m_saveStatus->setObjectName(QStringLiteral("saveStatus"));
    QPalette muted = m_saveStatus->palette();
    muted.setColor(QPalette::WindowText, AppTheme::secondaryLabel());
    m_saveStatus->setPalette(muted);
    layout->addWidget(m_saveStatus);
    setStats(WritingStats());
}

void WritingStatsBar::setStats(const WritingStats &stats)
{
    const QList<QPair<QString, int>> counts = {{tr("Wörter"), stats.words},
                                               {tr("Zeichen"), stats.characters},
                                               {tr("Zeilen"), stats.lines},
                                               {tr("Strophen"), stats.stanzas}};
    for (qsizetype i = 0; i < counts.size(); ++i)
        m_badges.at(i)->setText(QStringLiteral("%1 <b>%2</b>").arg(counts.at(i).first).arg(counts.at(i).second));
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
