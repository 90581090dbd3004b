#include "app/gui/StatusPanel.h"

#include "app/gui/ThemeIcon.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int shownLines = 4;

void retainSpaceWhenHidden(QWidget *widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

} // namespace

StatusPanel::StatusPanel(QWidget *parent)
    : QWidget(parent), m_statusLabel(new QLabel(this)), m_busyIndicator(new QProgressBar(this)),
      m_revealButton(
          new QPushButton(ThemeIcon::named(QStringLiteral("folder-open")), tr("Im Dateimanager zeigen"), this))
{
    setObjectName(QStringLiteral("statusPanel"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(6);

    auto *heading = new QLabel(tr("Status"), this);
    heading->setObjectName(QStringLiteral("sectionHeading"));
    layout->addWidget(heading);

    m_busyIndicator->setRange(0, 0);
    m_busyIndicator->setTextVisible(false);
    m_busyIndicator->setMaximumHeight(6);
    m_busyIndicator->hide();
    retainSpaceWhenHidden(m_busyIndicator);
    layout->addWidget(m_busyIndicator);

    m_statusLabel->setObjectName(QStringLiteral("statusText"));
    m_statusLabel->setWordWrap(true);
    m_statusLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_statusLabel->setText(tr("Keine aktuellen Meldungen."));
    m_statusLabel->setEnabled(false);
    m_statusLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // The panel keeps its height whatever the message, so the action lines above it stay
    // under the mouse; a longer message scrolls.
    auto *textArea = new QScrollArea(this);
    textArea->setObjectName(QStringLiteral("statusTextArea"));
    textArea->setFrameShape(QFrame::NoFrame);
    textArea->setWidgetResizable(true);
    textArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    textArea->setWidget(m_statusLabel);
    textArea->viewport()->setAutoFillBackground(false);
    m_statusLabel->setAutoFillBackground(false);
    textArea->setFixedHeight(shownLines * fontMetrics().lineSpacing() + 2);
    layout->addWidget(textArea);

    m_revealButton->hide();
    m_revealButton->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    retainSpaceWhenHidden(m_revealButton);
    connect(m_revealButton, &QPushButton::clicked, this, [this] { Q_EMIT revealRequested(m_lastWrittenFile); });
    layout->addWidget(m_revealButton, 0, Qt::AlignLeft);
}

void StatusPanel::setStatus(const QString &text)
{
    // The button belongs to the message about the written file; any later message hides it.
    if (!m_fileAnnouncedThisTurn)
        setLastWrittenFile(QString());
    m_statusLabel->setEnabled(!text.isEmpty());
    m_statusLabel->setText(text.isEmpty() ? tr("Keine aktuellen Meldungen.") : text);
    m_statusLabel->setProperty("statusText", text);
}

QString StatusPanel::status() const
{
    return m_statusLabel->property("statusText").toString();
}

void StatusPanel::setLastWrittenFile(const QString &path)
{
    // Operations announce the file and their message one right after the other, in either
    // order; both fall within one turn of the event loop.
    if (!path.isEmpty() && !m_fileAnnouncedThisTurn) {
        m_fileAnnouncedThisTurn = true;
        QTimer::singleShot(0, this, [this] { m_fileAnnouncedThisTurn = false; });
    }
    m_lastWrittenFile = path;
    m_revealButton->setVisible(!path.isEmpty());
    m_revealButton->setToolTip(path);
}

void StatusPanel::setBusy(bool busy)
{
    m_busyIndicator->setVisible(busy);
}

bool StatusPanel::isBusy() const
{
    return !m_busyIndicator->isHidden();
}
