#include "backup/gui/BackupRestoreDialog.h"

#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QLabel *countLabel(int count, QWidget *parent)
{
    auto *label = new QLabel(QLocale().toString(count), parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QLabel *captionLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

BackupRestoreDialog::BackupRestoreDialog(const RestorePreview &preview, const QString &fileName, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Backup wiederherstellen"));
    setModal(true);
    setMinimumWidth(480);

    auto *title = new QLabel(preview.statusTitle(), this);
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    titleFont.setBold(true);
    title->setFont(titleFont);
    title->setObjectName(QStringLiteral("statusTitle"));

    auto *text = new QLabel(preview.statusText(), this);
    text->setWordWrap(true);
    text->setObjectName(QStringLiteral("statusText"));

    const QString exported =
        QLocale().toString(preview.backup.exportedAt.toLocalTime(), QLocale::FormatType::ShortFormat);
    auto *source = new QLabel(tr("%1 · erstellt am %2").arg(fileName, exported), this);
    source->setForegroundRole(QPalette::PlaceholderText);
    source->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto *countsFrame = new QFrame(this);
    countsFrame->setFrameShape(QFrame::StyledPanel);
    auto *counts = new QGridLayout(countsFrame);
    counts->addWidget(countLabel(preview.createCount, countsFrame), 0, 0);
    counts->addWidget(captionLabel(tr("würden ergänzt"), countsFrame), 1, 0);
    counts->addWidget(countLabel(preview.updateCount, countsFrame), 0, 1);
    counts->addWidget(captionLabel(tr("würden geändert"), countsFrame), 1, 1);
    auto *trash = captionLabel(tr("%n im Papierkorb", nullptr, preview.backupDeletedCount), countsFrame);
    trash->setObjectName(QStringLiteral("trashCount"));
    counts->addWidget(trash, 2, 0, 1, 2);

    auto *safetyIcon = new QLabel(this);
    safetyIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(24, 24));
    auto *safetyNote = new QLabel(
        tr("Vor jeder Wiederherstellung legt OdeLeaf automatisch eine Sicherheitskopie deines aktuellen Archivs an."),
        this);
    safetyNote->setWordWrap(true);
    auto *safety = new QHBoxLayout;
    safety->addWidget(safetyIcon, 0, Qt::AlignTop);
    safety->addWidget(safetyNote, 1);

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole);
    m_missingOnly = buttons->addButton(displayTitle(RestoreMode::addMissing), QDialogButtonBox::ActionRole);
    m_primary = buttons->addButton(preview.hasChanges() ? displayTitle(RestoreMode::addMissingAndUpdate)
                                                        : tr("Sicherheitskopie erstellen"),
                                   QDialogButtonBox::AcceptRole);
    m_primary->setDefault(true);
    connect(m_missingOnly, &QPushButton::clicked, this, [this] { choose(RestoreMode::addMissing); });
    connect(m_primary, &QPushButton::clicked, this, [this] { choose(RestoreMode::addMissingAndUpdate); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addWidget(source);
    layout->addWidget(countsFrame);
    layout->addLayout(safety);
    layout->addStretch();
    layout->addWidget(buttons);
}

void BackupRestoreDialog::choose(RestoreMode mode)
{
    m_mode = mode;
    accept();
}
