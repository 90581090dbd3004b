#pragma once

#include "app/gui/PoemBodyEditor.h"

class QPlainTextEdit;

// Edits the plain text of a poem and leaves its formatted text untouched.
class PlainPoemBodyEditor : public PoemBodyEditor {
    Q_OBJECT

public:
    explicit PlainPoemBodyEditor(QWidget *parent = nullptr);

    void showPoem(const Poem &poem) override;
    void refreshFromPoem(const Poem &poem) override;
    void applyTo(Poem &poem) const override;
    void clear() override;
    void focusText() override;
    QPlainTextEdit *textEdit() const { return m_edit; }

private:
    void setTextQuietly(const QString &text);

    QPlainTextEdit *m_edit;
    bool m_loading = false;
};
