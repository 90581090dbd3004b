#include "app/gui/TrashDialog.h"

#include "app/gui/ThemeIcon.h"
#include "archive/ArchiveContext.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QString deletionTime(const Poem &poem)
{
    return poem.deletedAt()->toLocalTime().toString(QCoreApplication::translate("TrashDialog", "dd.MM.yyyy, HH:mm"));
}

QString countText(int count)
{
    if (count == 1)
        return QCoreApplication::translate("TrashDialog", "%1 gelöschtes Gedicht").arg(count);
    return QCoreApplication::translate("TrashDialog", "%1 gelöschte Gedichte").arg(count);
}

} // namespace

TrashDialog::TrashDialog(ArchiveContext &context, Trash::StatusCallback onStatus, QWidget *parent)
    : QDialog(parent), m_trash(context, std::move(onStatus)), m_count(new QLabel(this)),
      m_pages(new QStackedWidget(this)), m_rows(new QWidget), m_rowsLayout(new QVBoxLayout(m_rows)),
      m_emptyButton(new QPushButton(tr("Papierkorb leeren…"), this))
{
    setObjectName(QStringLiteral("trashDialog"));
    setWindowTitle(tr("Papierkorb"));
    resize(560, 520);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(22, 20, 22, 16);
    layout->setSpacing(6);

    auto *heading = new QLabel(tr("Papierkorb"), this);
    heading->setObjectName(QStringLiteral("dialogTitle"));
    layout->addWidget(heading);
    m_count->setObjectName(QStringLiteral("trashCount"));
    layout->addWidget(m_count);

    // The list with its hints, or the empty state.
    auto *listPage = new QWidget(this);
    auto *listLayout = new QVBoxLayout(listPage);
    listLayout->setContentsMargins(0, 6, 0, 0);
    listLayout->setSpacing(4);
    for (const QString &hint : {tr("Gelöschte Gedichte bleiben hier erhalten, bis du sie endgültig entfernst."),
                                tr("Du kannst einzelne Gedichte wiederherstellen oder dauerhaft löschen.")}) {
        auto *label = new QLabel(hint, listPage);
        label->setObjectName(QStringLiteral("hintText"));
        label->setWordWrap(true);
        listLayout->addWidget(label);
    }
    auto *scroll = new QScrollArea(listPage);
    scroll->setObjectName(QStringLiteral("trashList"));
    scroll->setWidgetResizable(true);
    m_rows->setObjectName(QStringLiteral("trashRows"));
    m_rowsLayout->setContentsMargins(0, 0, 0, 0);
    m_rowsLayout->setSpacing(0);
    scroll->setWidget(m_rows);
    listLayout->addSpacing(6);
    listLayout->addWidget(scroll, 1);

    auto *emptyPage = new QWidget(this);
    auto *emptyLayout = new QVBoxLayout(emptyPage);
    emptyLayout->addStretch(1);
    auto *emptyIcon = new QLabel(emptyPage);
    emptyIcon->setPixmap(ThemeIcon::named(QStringLiteral("user-trash")).pixmap(48, 48));
    emptyIcon->setAlignment(Qt::AlignCenter);
    emptyIcon->setEnabled(false);
    auto *emptyTitle = new QLabel(tr("Papierkorb ist leer"), emptyPage);
    emptyTitle->setObjectName(QStringLiteral("emptyTitle"));
    emptyTitle->setAlignment(Qt::AlignCenter);
    auto *emptyText =
        new QLabel(tr("Gelöschte Gedichte erscheinen hier und können später wiederhergestellt werden."), emptyPage);
    emptyText->setObjectName(QStringLiteral("emptyText"));
    emptyText->setAlignment(Qt::AlignCenter);
    emptyText->setWordWrap(true);
    emptyLayout->addWidget(emptyIcon);
    emptyLayout->addWidget(emptyTitle);
    emptyLayout->addWidget(emptyText);
    emptyLayout->addStretch(2);

    m_pages->addWidget(listPage);
    m_pages->addWidget(emptyPage);
    layout->addWidget(m_pages, 1);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_emptyButton->setObjectName(QStringLiteral("emptyTrashButton"));
    // Deleting for good is never what Enter does.
    m_emptyButton->setAutoDefault(false);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    buttons->addButton(m_emptyButton, QDialogButtonBox::DestructiveRole);
    connect(m_emptyButton, &QPushButton::clicked, this, &TrashDialog::emptyTrash);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addSpacing(8);
    layout->addWidget(buttons);

    reload();
    // Any change of poems may move one into or out of the trash. The rows are rebuilt once
    // the event loop is back: the button that caused the change is one of them.
    connect(&context, &ArchiveContext::contextDidChange, this, [this] {
        if (m_reloadPending)
            return;
        m_reloadPending = true;
        QMetaObject::invokeMethod(this, &TrashDialog::reload, Qt::QueuedConnection);
    });
}

void TrashDialog::reload()
{
    m_reloadPending = false;
    m_shown = m_trash.poems();
    while (QLayoutItem *item = m_rowsLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const PoemPtr &poem : std::as_const(m_shown))
        m_rowsLayout->addWidget(makeRow(poem));
    m_rowsLayout->addStretch(1);

    m_count->setText(countText(int(m_shown.size())));
    m_count->setVisible(!m_shown.isEmpty());
    m_pages->setCurrentIndex(m_shown.isEmpty() ? 1 : 0);
    m_emptyButton->setVisible(!m_shown.isEmpty());
}

QWidget *TrashDialog::makeRow(const PoemPtr &poem)
{
    auto *row = new QWidget(m_rows);
    row->setObjectName(QStringLiteral("trashRow"));
    row->setAttribute(Qt::WA_StyledBackground);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(12, 8, 8, 8);
    layout->setSpacing(8);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    auto *title = new QLabel(Trash::displayTitle(*poem), row);
    title->setObjectName(QStringLiteral("trashTitle"));
    auto *time = new QLabel(tr("Gelöscht am %1").arg(deletionTime(*poem)), row);
    time->setObjectName(QStringLiteral("hintText"));
    texts->addWidget(title);
    texts->addWidget(time);
    layout->addLayout(texts, 1);

    auto *restore = new QPushButton(tr("Wiederherstellen"), row);
    restore->setObjectName(QStringLiteral("restoreButton"));
    connect(restore, &QPushButton::clicked, this,
            [this, poem] { (void)m_trash.restore(poem, QDateTime::currentDateTimeUtc()); });
    auto *remove = new QToolButton(row);
    remove->setObjectName(QStringLiteral("deleteButton"));
    remove->setIcon(ThemeIcon::named(QStringLiteral("edit-delete")));
    remove->setToolTip(tr("Endgültig löschen"));
    remove->setAutoRaise(true);
    connect(remove, &QToolButton::clicked, this, [this, poem] { deletePermanently(poem); });
    layout->addWidget(restore);
    layout->addWidget(remove);
    return row;
}

void TrashDialog::deletePermanently(const PoemPtr &poem)
{
    // poemPendingPermanentDelete: the poem waits for the answer.
    const bool confirmed =
        askUser(tr("Gedicht endgültig löschen?"),
                tr("„%1“ wird dauerhaft gelöscht und kann nicht über den Papierkorb wiederhergestellt werden.")
                    .arg(Trash::displayTitle(*poem)),
                tr("Endgültig löschen"));
    if (!confirmed)
        return;
    (void)m_trash.deletePermanently(poem);
}

void TrashDialog::emptyTrash()
{
    const int count = m_trash.count();
    if (count == 0)
        return;
    const QString message = count == 1 ? tr("%1 gelöschtes Gedicht wird dauerhaft entfernt.").arg(count)
                                       : tr("%1 gelöschte Gedichte werden dauerhaft entfernt.").arg(count);
    const bool confirmed = askUser(tr("Papierkorb leeren?"), message, tr("Papierkorb endgültig leeren"));
    if (!confirmed)
        return;
    (void)m_trash.emptyTrash();
}

bool TrashDialog::askUser(const QString &title, const QString &text, const QString &confirmText)
{
    if (confirm)
        return confirm(title, text, confirmText);
    QMessageBox box(QMessageBox::Warning, title, title, QMessageBox::NoButton, this);
    box.setInformativeText(text);
    QPushButton *destructive = box.addButton(confirmText, QMessageBox::DestructiveRole);
    QPushButton *cancel = box.addButton(tr("Abbrechen"), QMessageBox::RejectRole);
    box.setDefaultButton(cancel);
    box.exec();
    return box.clickedButton() == destructive;
}
