#pragma once

#include <QList>
#include <QToolBar>

class PoemEditorActions;

// The formatting toolbar above the poem text. It shows as much as its width holds: every
// command (full), the everyday ones (compact) or only the text style and find (minimal).
// What a smaller form leaves out stays one click away under "Mehr".
class EditorToolBar : public QToolBar {
    Q_OBJECT

public:
    enum class Form { full, compact, minimal };

    EditorToolBar(PoemEditorActions &actions, QWidget *parent = nullptr);

    Form form() const { return m_form; }
    // The width at which every item of the form is shown without the overflow arrow.
    int widthFor(Form form) const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    // Bit per form, in the order of Form.
    using Forms = int;
    struct Item {
        QAction *action;
        Forms forms;
    };

    void addItem(QWidget *widget, Forms forms);
    void addSeparatorIn(Forms forms);
    void addButton(QAction *action, Forms forms);
    void addMenuButton(const QString &text, QMenu *menu, Forms forms);
    void applyForm(Form form);

    QList<Item> m_items;
    Form m_form = Form::full;
};
