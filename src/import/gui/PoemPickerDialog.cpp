#include "import/gui/PoemPickerDialog.h"

#include "archive/PoemValues.h"
#include "archive/TextComparison.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int idRole = Qt::UserRole + 1;
constexpr int titleRole = Qt::UserRole + 2;

} // namespace

PoemPickerDialog::PoemPickerDialog(QList<PoemSnapshotEntry> poems, QWidget *parent)
    : QDialog(parent), m_search(new QLineEdit(this)), m_list(new QListWidget(this))
{
    setWindowTitle(tr("Gedicht auswählen"));
    resize(460, 560);

    auto *heading = new QLabel(tr("Gedicht auswählen"), this);
    QFont headingFont = heading->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading->setFont(headingFont);

    m_search->setPlaceholderText(tr("Titel suchen"));
    m_search->setClearButtonEnabled(true);

    std::stable_sort(poems.begin(), poems.end(), [](const PoemSnapshotEntry &a, const PoemSnapshotEntry &b) {
        return TextComparison::localizedStandardCompare(a.title, b.title) < 0;
    });
    for (const PoemSnapshotEntry &poem : std::as_const(poems)) {
        const QString title = poem.title.trimmed().isEmpty() ? tr("(ohne Titel)") : poem.title;
        auto *item = new QListWidgetItem(title, m_list);
        item->setData(idRole, uuidText(poem.id));
        item->setData(titleRole, poem.title);
        item->setToolTip(uuidText(poem.id));
    }
    m_list->setUniformItemSizes(true);
    m_list->setAlternatingRowColors(true);
    m_list->setSpacing(1);
    m_count = new QLabel(this);
    m_count->setForegroundRole(QPalette::PlaceholderText);

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole);
    m_pickButton = buttons->addButton(tr("Auswählen"), QDialogButtonBox::AcceptRole);
    m_pickButton->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(m_search);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_count);
    layout->addWidget(buttons);

    connect(m_search, &QLineEdit::textChanged, this, &PoemPickerDialog::applySearch);
    connect(m_list, &QListWidget::currentItemChanged, this, &PoemPickerDialog::updateAcceptButton);
    connect(m_list, &QListWidget::itemActivated, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // Arrow keys in the search field move through the list.
    m_search->installEventFilter(this);
    applySearch(QString());
}

void PoemPickerDialog::setSearchText(const QString &text)
{
    m_search->setText(text);
}

std::optional<QString> PoemPickerDialog::pickedPoemObjectURI() const
{
    const QListWidgetItem *item = m_list->currentItem();
    if (result() != QDialog::Accepted || !item || item->isHidden())
        return std::nullopt;
    return item->data(idRole).toString();
}

void PoemPickerDialog::applySearch(const QString &text)
{
    const QString needle = text.trimmed();
    QListWidgetItem *firstVisible = nullptr;
    int shown = 0;
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem *item = m_list->item(row);
        const bool visible = needle.isEmpty() || item->data(titleRole).toString().contains(needle, Qt::CaseInsensitive);
        item->setHidden(!visible);
        shown += visible ? 1 : 0;
        if (visible && !firstVisible)
            firstVisible = item;
    }
    if (!m_list->currentItem() || m_list->currentItem()->isHidden())
        m_list->setCurrentItem(firstVisible);
    // German has no numerus table loaded, so singular and plural are separate texts.
    const int total = m_list->count();
    if (needle.isEmpty())
        m_count->setText((total == 1 ? tr("%1 Gedicht") : tr("%1 Gedichte")).arg(total));
    else
        m_count->setText((total == 1 ? tr("%1 von %2 Gedicht") : tr("%1 von %2 Gedichten")).arg(shown).arg(total));
    updateAcceptButton();
}

void PoemPickerDialog::updateAcceptButton()
{
    const QListWidgetItem *item = m_list->currentItem();
    m_pickButton->setEnabled(item && !item->isHidden());
}

bool PoemPickerDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
