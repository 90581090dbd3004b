#include "import/gui/ImportReportWindow.h"

#include "archive/MessageText.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QLabel *wrappedLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QIcon statusIcon(ImportReport::Status status)
{
    switch (status) {
    case ImportReport::Status::imported:
        return QIcon::fromTheme(QStringLiteral("emblem-ok"), QIcon::fromTheme(QStringLiteral("dialog-ok")));
    case ImportReport::Status::skipped:
        return QIcon::fromTheme(QStringLiteral("dialog-information"));
    case ImportReport::Status::failed:
        return QIcon::fromTheme(QStringLiteral("dialog-warning"));
    }
    return {};
}

// The reasons in full, one file a line, where the "Grund" column has to cut them.
QString withReasons(const QString &technicalDetails, const ImportReport &report)
{
    QStringList lines;
    for (const ImportReport::Item &item : report.items) {
        if (item.reason && !item.reason->isEmpty())
            lines.append(QStringLiteral("%1 → %2: %3")
                             .arg(item.fileName, item.poemTitle, ImportReport::displayedReason(*item.reason)));
    }
    if (lines.isEmpty())
        return technicalDetails;
    const QString reasons = ImportReportWindow::tr("Gründe:") + QLatin1Char('\n') + lines.join(QLatin1Char('\n'));
    return technicalDetails.isEmpty() ? reasons : technicalDetails + QStringLiteral("\n\n") + reasons;
}

} // namespace

ImportReportWindow::ImportReportWindow(const ImportReport &report, const QString &technicalDetails, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(report.displayedTitle());
    resize(860, 600);
    setSizeGripEnabled(true);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(8);

    auto *headline = new QLabel(report.headline(), this);
    headline->setObjectName(QStringLiteral("reportHeadline"));
    QFont headlineFont = headline->font();
    headlineFont.setBold(true);
    headlineFont.setPointSizeF(headlineFont.pointSizeF() * 1.3);
    headline->setFont(headlineFont);
    layout->addWidget(headline);

    const QString when = report.createdAt.toLocalTime().toString(tr("dd.MM.yyyy, HH:mm"));
    auto *subtitle = new QLabel(tr("%1 – %2").arg(report.displayedTitle(), when), this);
    subtitle->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(subtitle);
    auto *summary = wrappedLabel(MessageText::shortened(report.summary), this);
    summary->setObjectName(QStringLiteral("reportSummary"));
    // Wraps at the window's width; a word longer than that is cut, never widens the window.
    summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(summary);
    auto *checked = new QLabel(report.checkedFilesText(), this);
    checked->setObjectName(QStringLiteral("reportCheckedFiles"));
    layout->addWidget(checked);

    m_items = new QTableWidget(int(report.items.size()), 4, this);
    m_items->setHorizontalHeaderLabels({tr("Status"), tr("Datei"), tr("Gedicht"), tr("Grund")});
    m_items->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_items->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_items->setAlternatingRowColors(true);
    m_items->setShowGrid(false);
    m_items->setWordWrap(false);
    m_items->verticalHeader()->hide();
    m_items->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int row = 0; row < report.items.size(); ++row) {
        const ImportReport::Item &item = report.items.at(row);
        m_items->setItem(row, 0,
                         new QTableWidgetItem(statusIcon(item.status), ImportReport::displayTitle(item.status)));
        m_items->setItem(row, 1, new QTableWidgetItem(item.fileName));
        m_items->setItem(row, 2, new QTableWidgetItem(item.poemTitle));
        const QString reason = item.reason ? ImportReport::displayedReason(*item.reason) : QString();
        m_items->setItem(row, 3, new QTableWidgetItem(reason));
        m_items->item(row, 1)->setToolTip(item.fileName);
        m_items->item(row, 3)->setToolTip(reason);
    }
    m_items->resizeColumnToContents(0);
    m_items->setColumnWidth(1, 260);
    m_items->setColumnWidth(2, 220);
    m_items->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(m_items, 1);

    m_detailsToggle = new QToolButton(this);
    m_detailsToggle->setText(tr("Technische Details"));
    m_detailsToggle->setCheckable(true);
    m_detailsToggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_detailsToggle->setArrowType(Qt::RightArrow);
    m_detailsToggle->setAutoRaise(true);
    m_details = new QPlainTextEdit(withReasons(technicalDetails, report), this);
    m_details->setReadOnly(true);
    m_details->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_details->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_details->setMaximumHeight(180);
    m_details->hide();
    connect(m_detailsToggle, &QToolButton::toggled, this, [this](bool open) {
        m_details->setVisible(open);
        m_detailsToggle->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
    });
    layout->addWidget(m_detailsToggle, 0, Qt::AlignLeft);
    layout->addWidget(m_details);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *close = buttons->addButton(tr("Schließen"), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("closeReportButton"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}
