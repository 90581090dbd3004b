#include "backup/gui/SafetyBackupWindow.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum Column { kindColumn, dateColumn, countColumn, sizeColumn, nameColumn };

QLabel *hint(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(QStringLiteral("hintText"));
    label->setWordWrap(true);
    return label;
}

} // namespace

SafetyBackupWindow::SafetyBackupWindow(SafetyBackupFolder folder, QWidget *parent)
    : QDialog(parent), m_folder(std::move(folder)), m_summary(new QLabel(this)), m_pages(new QStackedWidget(this)),
      m_list(new QTreeWidget(this)), m_restore(new QPushButton(tr("Wiederherstellen…"), this)),
      m_reveal(new QPushButton(tr("Im Dateimanager zeigen"), this)), m_delete(new QPushButton(tr("Löschen…"), this))
{
    setObjectName(QStringLiteral("safetyBackupWindow"));
    setWindowTitle(tr("Sicherheitsbackups"));
    resize(820, 520);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(22, 20, 22, 16);
    layout->setSpacing(6);

    auto *heading = new QLabel(tr("Sicherheitsbackups"), this);
    heading->setObjectName(QStringLiteral("dialogTitle"));
    layout->addWidget(heading);
    m_summary->setObjectName(QStringLiteral("safetyBackupSummary"));
    layout->addWidget(m_summary);
    layout->addWidget(hint(tr("OdeLeaf sichert das ganze Archiv vor jeder Wiederherstellung und jedem Import sowie "
                              "einmal am Tag. Tagesbackups der letzten 14 Tage bleiben erhalten, ältere eines pro "
                              "Monat; alle anderen löschst nur du."),
                           this));
    layout->addSpacing(6);

    m_list->setObjectName(QStringLiteral("safetyBackupList"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setHeaderLabels({tr("Art"), tr("Erstellt"), tr("Gedichte"), tr("Größe"), tr("Datei")});
    m_list->header()->setStretchLastSection(true);
    m_list->header()->setSectionResizeMode(QHeaderView::Interactive);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &SafetyBackupWindow::updateButtons);
    connect(m_list, &QTreeWidget::itemActivated, this, [this] { m_restore->click(); });

    auto *emptyPage = new QWidget(this);
    auto *emptyLayout = new QVBoxLayout(emptyPage);
    emptyLayout->addStretch(1);
    auto *emptyTitle = new QLabel(tr("Noch keine Sicherheitsbackups"), emptyPage);
    emptyTitle->setObjectName(QStringLiteral("emptyTitle"));
    emptyTitle->setAlignment(Qt::AlignCenter);
    auto *emptyText = new QLabel(tr("Sie entstehen beim ersten Start des Tages und vor jeder Wiederherstellung "
                                    "oder jedem Import."),
                                 emptyPage);
    emptyText->setObjectName(QStringLiteral("emptyText"));
    emptyText->setAlignment(Qt::AlignCenter);
    emptyText->setWordWrap(true);
    emptyLayout->addWidget(emptyTitle);
    emptyLayout->addWidget(emptyText);
    emptyLayout->addStretch(2);
    m_pages->addWidget(m_list);
    m_pages->addWidget(emptyPage);
    layout->addWidget(m_pages, 1);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    for (QPushButton *button : {m_restore, m_reveal, m_delete})
        button->setAutoDefault(false);
    m_restore->setObjectName(QStringLiteral("restoreSafetyBackupButton"));
    m_reveal->setObjectName(QStringLiteral("revealSafetyBackupButton"));
    m_delete->setObjectName(QStringLiteral("deleteSafetyBackupButton"));
    buttons->addButton(m_restore, QDialogButtonBox::ActionRole);
    buttons->addButton(m_reveal, QDialogButtonBox::ActionRole);
    buttons->addButton(m_delete, QDialogButtonBox::DestructiveRole);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_restore, &QPushButton::clicked, this, [this] {
        if (const auto file = selectedFile())
            Q_EMIT restoreRequested(file->path);
    });
    connect(m_reveal, &QPushButton::clicked, this, [this] {
        if (const auto file = selectedFile())
            Q_EMIT revealRequested(file->path);
    });
    connect(m_delete, &QPushButton::clicked, this, &SafetyBackupWindow::deleteSelected);
    layout->addSpacing(8);
    layout->addWidget(buttons);

    reload();
}

void SafetyBackupWindow::reload()
{
    const std::optional<SafetyBackupFile> previous = selectedFile();
    m_files = m_folder.list();
    m_list->clear();
    qint64 bytes = 0;
    for (const SafetyBackupFile &file : std::as_const(m_files)) {
        auto *item = new QTreeWidgetItem(m_list, {displayTitle(file.kind), file.createdText(), file.poemCountText(),
                                                  file.sizeText(), file.fileName});
        item->setTextAlignment(countColumn, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(sizeColumn, Qt::AlignRight | Qt::AlignVCenter);
        item->setToolTip(nameColumn, file.path);
        bytes += file.bytes;
    }
    // Room between the columns; the file name takes what is left.
    for (int column = kindColumn; column < nameColumn; ++column) {
        m_list->resizeColumnToContents(column);
        m_list->setColumnWidth(column, m_list->columnWidth(column) + 18);
    }
    const QString total = QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
    m_summary->setText(m_files.size() == 1 ? tr("1 Sicherung, %1").arg(total)
                                           : tr("%1 Sicherungen, zusammen %2").arg(m_files.size()).arg(total));
    m_pages->setCurrentIndex(m_files.isEmpty() ? 1 : 0);

    int row = 0;
    for (int i = 0; previous && i < m_files.size(); ++i) {
        if (m_files.at(i).path == previous->path)
            row = i;
    }
    selectFile(m_files.isEmpty() ? -1 : row);
    updateButtons();
}

std::optional<SafetyBackupFile> SafetyBackupWindow::selectedFile() const
{
    QTreeWidgetItem *item = m_list->currentItem();
    if (!item || !item->isSelected())
        return std::nullopt;
    const int row = m_list->indexOfTopLevelItem(item);
    if (row < 0 || row >= m_files.size())
        return std::nullopt;
    return m_files.at(row);
}

void SafetyBackupWindow::selectFile(int row)
{
    QTreeWidgetItem *item = row >= 0 ? m_list->topLevelItem(row) : nullptr;
    m_list->setCurrentItem(item);
    if (item)
        item->setSelected(true);
}

void SafetyBackupWindow::updateButtons()
{
    const std::optional<SafetyBackupFile> file = selectedFile();
    // A copy that cannot be read has nothing to restore.
    m_restore->setEnabled(file && file->poemCount.has_value());
    m_reveal->setEnabled(file.has_value());
    m_delete->setEnabled(file.has_value());
}

void SafetyBackupWindow::deleteSelected()
{
    const std::optional<SafetyBackupFile> file = selectedFile();
    if (!file)
        return;
    const bool confirmed = confirmDeletion ? confirmDeletion(*file) : askDeletion(*file);
    if (!confirmed)
        return;
    if (auto removed = SafetyBackupFolder::remove(*file); !removed) {
        QMessageBox::warning(this, tr("Sicherheitsbackups"), removed.errorMessage());
        reload();
        return;
    }
    Q_EMIT statusChanged(tr("Sicherheitsbackup gelöscht: %1").arg(file->fileName));
    reload();
}

bool SafetyBackupWindow::askDeletion(const SafetyBackupFile &file)
{
    QMessageBox box(QMessageBox::Warning, tr("Sicherheitsbackup löschen?"),
                    tr("„%1“ (%2, %3) wird endgültig gelöscht. Das lässt sich nicht rückgängig machen.")
                        .arg(file.fileName, displayTitle(file.kind), file.createdText()),
                    QMessageBox::NoButton, this);
    QPushButton *remove = box.addButton(tr("Löschen"), QMessageBox::DestructiveRole);
    QPushButton *cancel = box.addButton(tr("Abbrechen"), QMessageBox::RejectRole);
    box.setDefaultButton(cancel);
    box.exec();
    return box.clickedButton() == remove;
}
