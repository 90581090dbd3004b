#include "editor/gui/FindReplaceBar.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace {

QToolButton *barButton(const QString &text, const QString &toolTip, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

FindReplaceBar::FindReplaceBar(QWidget *parent)
    : QWidget(parent), m_find(new QLineEdit(this)), m_replace(new QLineEdit(this)), m_status(new QLabel(this))
{
    setObjectName(QStringLiteral("findReplaceBar"));
    m_find->setPlaceholderText(tr("Suchen"));
    m_find->setClearButtonEnabled(true);
    m_find->setMinimumWidth(100);
    m_replace->setPlaceholderText(tr("Ersetzen durch"));
    m_replace->setClearButtonEnabled(true);
    m_replace->setMinimumWidth(100);
    m_status->setObjectName(QStringLiteral("findReplaceStatus"));

    auto *previous = barButton(QStringLiteral("‹"), tr("Vorheriger Treffer"), this);
    auto *next = barButton(QStringLiteral("›"), tr("Nächster Treffer"), this);
    auto *replace = barButton(tr("Ersetzen"), tr("Ersetzen"), this);
    auto *replaceAll = barButton(tr("Alle ersetzen"), tr("Alle ersetzen"), this);
    auto *close = barButton(QStringLiteral("✕"), tr("Suche schließen"), this);
    previous->setObjectName(QStringLiteral("findPrevious"));
    next->setObjectName(QStringLiteral("findNext"));
    replace->setObjectName(QStringLiteral("replaceCurrent"));
    replaceAll->setObjectName(QStringLiteral("replaceAll"));

    // Two rows, each field with the buttons that act on it: in one row the controls would
    // not fit the detail column of a small window and slide into each other.
    // A long status takes the room beside the arrows, never more.
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *findButtons = new QHBoxLayout;
    findButtons->setSpacing(4);
    findButtons->addWidget(previous);
    findButtons->addWidget(next);
    findButtons->addSpacing(6);
    findButtons->addWidget(m_status, 1);
    auto *replaceButtons = new QHBoxLayout;
    replaceButtons->setSpacing(4);
    replaceButtons->addWidget(replace);
    replaceButtons->addWidget(replaceAll);
    replaceButtons->addStretch(1);

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(10, 4, 10, 4);
    layout->setHorizontalSpacing(6);
    layout->setVerticalSpacing(4);
    layout->addWidget(m_find, 0, 0);
    layout->addLayout(findButtons, 0, 1);
    layout->addWidget(close, 0, 2, Qt::AlignTop);
    layout->addWidget(m_replace, 1, 0);
    layout->addLayout(replaceButtons, 1, 1);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 2);

    connect(previous, &QToolButton::clicked, this, &FindReplaceBar::findPreviousRequested);
    connect(next, &QToolButton::clicked, this, &FindReplaceBar::findNextRequested);
    connect(replace, &QToolButton::clicked, this, &FindReplaceBar::replaceRequested);
    connect(replaceAll, &QToolButton::clicked, this, &FindReplaceBar::replaceAllRequested);
    connect(close, &QToolButton::clicked, this, &FindReplaceBar::closeRequested);
    connect(m_find, &QLineEdit::returnPressed, this, &FindReplaceBar::findNextRequested);
    connect(m_replace, &QLineEdit::returnPressed, this, &FindReplaceBar::replaceRequested);
}

QString FindReplaceBar::findText() const
{
    return m_find->text();
}

QString FindReplaceBar::replaceText() const
{
    return m_replace->text();
}

void FindReplaceBar::setFindText(const QString &text)
{
    m_find->setText(text);
}

void FindReplaceBar::setStatus(const QString &status)
{
    m_status->setText(status);
    m_status->setToolTip(status);
}

QString FindReplaceBar::status() const
{
    return m_status->text();
}

void FindReplaceBar::focusFind()
{
    m_find->setFocus();
    m_find->selectAll();
}

void FindReplaceBar::focusReplace()
{
    m_replace->setFocus();
    m_replace->selectAll();
}

void FindReplaceBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        Q_EMIT closeRequested();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && (event->modifiers() & Qt::ShiftModifier)) {
        Q_EMIT findPreviousRequested();
        return;
    }
    QWidget::keyPressEvent(event);
}
