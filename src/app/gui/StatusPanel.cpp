#include "app/gui/StatusPanel.h"

#include "app/gui/ThemeIcon.h"
#include "archive/MessageText.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPlainTextEdit>

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
          new QPushButton(ThemeIcon::named(QStringLiteral("folder-open")), tr("Im Dateimanager zeigen"), this)),
      m_wholeStatusButton(new QPushButton(tr("Ganze Meldung…"), this))
{
    setObjectName(QStringLiteral("statusPanel"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 10, 4, 12);
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

    m_wholeStatusButton->setObjectName(QStringLiteral("wholeStatusButton"));
    m_wholeStatusButton->setFlat(true);
    m_wholeStatusButton->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    m_wholeStatusButton->hide();
    connect(m_wholeStatusButton, &QPushButton::clicked, this, &StatusPanel::showWholeStatus);
    layout->addWidget(m_wholeStatusButton, 0, Qt::AlignLeft);

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
    m_status = text;
    m_statusLabel->setEnabled(!text.isEmpty());
    m_statusLabel->setText(text.isEmpty() ? tr("Keine aktuellen Meldungen.") : MessageText::shortened(text));
    const bool cut = MessageText::isShortened(text);
    m_statusLabel->setToolTip(cut ? MessageText::shortened(text, MessageText::tooltipLimit) : QString());
    m_wholeStatusButton->setVisible(cut);
}

QString StatusPanel::status() const
{
    return m_status;
}

void StatusPanel::showWholeStatus()
{
    QDialog dialog(this);
    dialog.setWindowTitle(tr("Status"));
    auto *layout = new QVBoxLayout(&dialog);
    auto *text = new QPlainTextEdit(&dialog);
    text->setReadOnly(true);
    text->setPlainText(MessageText::inLines(m_status));
    layout->addWidget(text);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    dialog.resize(640, 360);
    dialog.exec();
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
