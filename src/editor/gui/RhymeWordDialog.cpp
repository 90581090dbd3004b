#include "editor/gui/RhymeWordDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

RhymeWordDialog::RhymeWordDialog(QWidget *parent) : QDialog(parent), m_word(new QLineEdit(this))
{
    setWindowTitle(tr("Reime suchen"));
    auto *text = new QLabel(tr("Gib ein Wort ein, zu dem OdeLeaf Reime suchen soll."), this);
    text->setWordWrap(true);
    m_word->setPlaceholderText(tr("Wort"));
    m_word->setFixedSize(260, 24);
    auto *buttons = new QDialogButtonBox(this);
    QPushButton *search = buttons->addButton(tr("Suchen"), QDialogButtonBox::AcceptRole);
    buttons->addButton(tr("Abbrechen"), QDialogButtonBox::RejectRole);
    search->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(m_word);
    layout->addWidget(buttons);
}

QString RhymeWordDialog::word() const
{
    return m_word->text();
}
