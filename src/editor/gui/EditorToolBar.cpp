#include "editor/gui/EditorToolBar.h"

#include "editor/gui/PoemEditorActions.h"

#include <QAction>
#include <QLayout>
#include <QMenu>
#include <QResizeEvent>
#include <QToolButton>

namespace {

constexpr int inFull = 1 << int(EditorToolBar::Form::full);
constexpr int inCompact = 1 << int(EditorToolBar::Form::compact);
constexpr int inMinimal = 1 << int(EditorToolBar::Form::minimal);
constexpr int always = inFull | inCompact | inMinimal;
constexpr int reduced = inCompact | inMinimal;

bool shownIn(int forms, EditorToolBar::Form form)
{
    return forms & (1 << int(form));
}

} // namespace

EditorToolBar::EditorToolBar(PoemEditorActions &actions, QWidget *parent) : QToolBar(tr("Textformatierung"), parent)
{
    setObjectName(QStringLiteral("editorToolBar"));
    setMovable(false);
    setIconSize(QSize(18, 18));
    setToolButtonStyle(Qt::ToolButtonIconOnly);

    addButton(actions.bold, always);
    addButton(actions.italic, always);
    addButton(actions.underline, always);
    addSeparatorIn(always);
    addButton(actions.smallerFont, inFull);
    addButton(actions.biggerFont, inFull);
    addSeparatorIn(inFull);
    addButton(actions.alignLeft, inFull | inCompact);
    addButton(actions.alignCenter, inFull | inCompact);
    addButton(actions.alignRight, inFull | inCompact);
    addSeparatorIn(inFull | inCompact);
    addMenuButton(tr("Farbe"), actions.colorMenu, inFull | inCompact);
    addMenuButton(tr("Abstand"), actions.spacingMenu, inFull);
    addButton(actions.clearFormatting, inFull);
    addSeparatorIn(inFull);
    addMenuButton(tr("Einfügen"), actions.insertMenu, inFull | inCompact);
    addButton(actions.checkSpelling, inFull);
    auto *rhymes = new QToolButton(this);
    rhymes->setDefaultAction(actions.rhymes);
    rhymes->setMenu(actions.rhymeMenu);
    rhymes->setPopupMode(QToolButton::MenuButtonPopup);
    rhymes->setToolButtonStyle(Qt::ToolButtonTextOnly);
    addItem(rhymes, inFull | inCompact);
    addSeparatorIn(always);
    addButton(actions.find, always);
    addButton(actions.toggleNotes, always);
    addMenuButton(tr("Ansicht"), actions.viewMenu, always);
    addButton(actions.duplicate, inFull);
    // Holds every command, so whatever a smaller form leaves out is still there.
    addMenuButton(tr("Mehr"), actions.formattingMenu, reduced);
    applyForm(Form::full);
}

// Each item is a widget of its own: hiding the toolbar's action must not hide the shared
// command in the menus too.
void EditorToolBar::addItem(QWidget *widget, Forms forms)
{
    widget->setFocusPolicy(Qt::NoFocus);
    m_items.append({addWidget(widget), forms});
}

void EditorToolBar::addSeparatorIn(Forms forms)
{
    m_items.append({addSeparator(), forms});
}

void EditorToolBar::addButton(QAction *action, Forms forms)
{
    auto *button = new QToolButton(this);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setIconSize(iconSize());
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    addItem(button, forms);
}

void EditorToolBar::addMenuButton(const QString &text, QMenu *menu, Forms forms)
{
    auto *button = new QToolButton(this);
    button->setText(text);
    button->setToolTip(menu->title());
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setAutoRaise(true);
    addItem(button, forms);
}

int EditorToolBar::widthFor(Form form) const
{
    const QMargins margins = layout()->contentsMargins();
    int width = margins.left() + margins.right();
    int shown = 0;
    for (const Item &item : m_items) {
        if (!shownIn(item.forms, form))
            continue;
        QWidget *widget = widgetForAction(item.action);
        widget->ensurePolished();
        width += widget->sizeHint().width();
        ++shown;
    }
    return width + layout()->spacing() * qMax(0, shown - 1);
}

void EditorToolBar::resizeEvent(QResizeEvent *event)
{
    const int width = event->size().width();
    Form form = Form::minimal;
    if (width >= widthFor(Form::full))
        form = Form::full;
    else if (width >= widthFor(Form::compact))
        form = Form::compact;
    QToolBar::resizeEvent(event);
    if (form == m_form)
        return;
    applyForm(form);
    // The layout has already placed the items for this size; place them again for the new form
    // now rather than after a round of the event loop with an overflow arrow on screen.
    layout()->activate();
}

void EditorToolBar::applyForm(Form form)
{
    m_form = form;
    for (const Item &item : std::as_const(m_items))
        item.action->setVisible(shownIn(item.forms, form));
}
