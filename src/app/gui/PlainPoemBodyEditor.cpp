#include "app/gui/PlainPoemBodyEditor.h"

#include "archive/AppPreferences.h"
#include "archive/Poem.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

PlainPoemBodyEditor::PlainPoemBodyEditor(QWidget *parent) : PoemBodyEditor(parent), m_edit(new QPlainTextEdit(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_edit->setObjectName(QStringLiteral("poemText"));
    m_edit->setPlaceholderText(tr("Hier entsteht dein Gedicht …"));
    m_edit->setFrameShape(QFrame::NoFrame);
    m_edit->setTabChangesFocus(false);
    QFont font(AppPreferences::editorFontName());
    font.setPointSizeF(13.5);
    m_edit->setFont(font);
    m_edit->document()->setDocumentMargin(4);
    layout->addWidget(m_edit);
    connect(m_edit, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_loading)
            Q_EMIT bodyChanged();
    });
}

void PlainPoemBodyEditor::setTextQuietly(const QString &text)
{
    m_loading = true;
    m_edit->setPlainText(text);
    m_loading = false;
}

void PlainPoemBodyEditor::showPoem(const Poem &poem)
{
    setTextQuietly(poem.text().value_or(QString()));
}

void PlainPoemBodyEditor::refreshFromPoem(const Poem &poem)
{
    const QString text = poem.text().value_or(QString());
    if (m_edit->toPlainText() != text)
        setTextQuietly(text);
}

void PlainPoemBodyEditor::applyTo(Poem &poem) const
{
    poem.setText(m_edit->toPlainText());
}

void PlainPoemBodyEditor::clear()
{
    setTextQuietly(QString());
}

void PlainPoemBodyEditor::focusText()
{
    m_edit->setFocus(Qt::OtherFocusReason);
}
