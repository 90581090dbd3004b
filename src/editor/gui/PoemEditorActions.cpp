#include "editor/gui/PoemEditorActions.h"

#include "editor/ParagraphSpacingOption.h"
#include "editor/RhymeProvider.h"
#include "editor/TextColorOption.h"
#include "editor/WriterImageSize.h"
#include "editor/gui/EditorIcons.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QWidget>

PoemEditorActions::PoemEditorActions(QWidget *owner) : QObject(owner), m_owner(owner)
{
    // Ctrl+Z and Shift+Ctrl+Z reach the text view itself (and the window's Edit menu); a second
    // binding here would make the keys ambiguous.
    undo = make(tr("Rückgängig"), QKeySequence());
    redo = make(tr("Wiederholen"), QKeySequence());
    bold = makeToggle(tr("Fett"), QKeySequence::Bold);
    bold->setIcon(EditorIcons::letter(tr("F", "bold button"), true, false, false));
    italic = makeToggle(tr("Kursiv"), QKeySequence::Italic);
    italic->setIcon(EditorIcons::letter(tr("K", "italic button"), false, true, false));
    underline = makeToggle(tr("Unterstrichen"), QKeySequence::Underline);
    underline->setIcon(EditorIcons::letter(tr("U", "underline button"), false, false, true));
    biggerFont = make(tr("Schrift größer"), QKeySequence(Qt::CTRL | Qt::Key_Plus));
    biggerFont->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    biggerFont->setIcon(EditorIcons::letter(QStringLiteral("A+"), false, false, false));
    smallerFont = make(tr("Schrift kleiner"), QKeySequence(Qt::CTRL | Qt::Key_Minus));
    smallerFont->setIcon(EditorIcons::letter(QStringLiteral("A−"), false, false, false));
    alignLeft = makeToggle(tr("Linksbündig"), QKeySequence(Qt::CTRL | Qt::Key_L));
    alignLeft->setIcon(EditorIcons::alignment(Qt::AlignLeft));
    alignCenter = makeToggle(tr("Zentriert"), QKeySequence(Qt::CTRL | Qt::Key_E));
    alignCenter->setIcon(EditorIcons::alignment(Qt::AlignHCenter));
    alignRight = makeToggle(tr("Rechtsbündig"), QKeySequence(Qt::CTRL | Qt::Key_R));
    alignRight->setIcon(EditorIcons::alignment(Qt::AlignRight));
    auto *alignments = new QActionGroup(this);
    for (QAction *action : {alignLeft, alignCenter, alignRight})
        alignments->addAction(action);
    clearFormatting = make(tr("Formatierung entfernen"), QKeySequence(Qt::CTRL | Qt::Key_Space));
    clearFormatting->setIcon(EditorIcons::clearFormatting());
    checkSpelling = make(tr("Rechtschreibung prüfen"), QKeySequence(Qt::Key_F7));
    checkSpelling->setIcon(EditorIcons::spelling());
    insertFooter = make(tr("Standardabschluss einfügen"));
    insertCaption = make(tr("Bildunterschrift einfügen"));
    insertDivider = make(tr("Abschnittsmarke einfügen"));
    insertTab = make(tr("Tabulator einfügen"), QKeySequence(Qt::CTRL | Qt::Key_Tab));
    insertImage = make(tr("Bild in das Gedicht einfügen"));
    // Ctrl+F belongs to the window, which sends it here while the editor has the focus.
    find = make(tr("Suchen und ersetzen"), QKeySequence());
    find->setIcon(EditorIcons::find());
    findNext = make(tr("Nächster Treffer"), QKeySequence::FindNext);
    findPrevious = make(tr("Vorheriger Treffer"), QKeySequence::FindPrevious);
    replace = make(tr("Ersetzen…"), QKeySequence::Replace);
    rhymes = make(tr("Reime…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
    rhymesForSelection = make(tr("Reime zum markierten Wort suchen"));
    toggleNotes = makeToggle(tr("Notizen"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    toggleNotes->setIcon(EditorIcons::notes());
    toggleWriterMode = makeToggle(tr("Schreibmodus"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    // The window's own writer-mode command takes this key wherever the focus is; here it is only shown.
    toggleWriterMode->setShortcutContext(Qt::WidgetShortcut);
    toggleFocusMode = makeToggle(tr("Fokusmodus"), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_F));
    toggleToolbar = makeToggle(tr("Werkzeugleiste ausblenden"));
    paperAppearance = makeToggle(tr("Papieransicht"));
    toggleVerse = makeToggle(tr("Versmaß"));
    duplicate = make(tr("Gedicht als neue Variante duplizieren"));
    duplicate->setIcon(EditorIcons::duplicate());

    for (const TextColorOption option : allTextColorOptions) {
        QAction *action = make(title(option));
        action->setIcon(EditorIcons::colorSwatch(color(option).value_or(QColor())));
        action->setData(int(option));
        colors.append(action);
    }
    for (const ParagraphSpacingOption option : allParagraphSpacingOptions) {
        QAction *action = make(title(option));
        action->setData(int(option));
        spacings.append(action);
    }
    for (const WriterImageSize size : allWriterImageSizes) {
        QAction *action = make(title(size));
        action->setData(int(size));
        imageSizes.append(action);
    }
    for (const RhymeProvider provider : allRhymeProviders) {
        QAction *action = make(title(provider));
        action->setData(int(provider));
        rhymeProviders.append(action);
    }
    buildMenus();
}

PoemEditorActions::~PoemEditorActions()
{
    // Menus have no parent widget; they go with the actions.
    delete formattingMenu;
    delete colorMenu;
    delete spacingMenu;
    delete imageSizeMenu;
    delete rhymeMenu;
    delete insertMenu;
    delete viewMenu;
}

QAction *PoemEditorActions::make(const QString &text, const QKeySequence &shortcut)
{
    auto *action = new QAction(text, this);
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(text, shortcut.toString(QKeySequence::NativeText)));
        m_owner->addAction(action);
    }
    return action;
}

QAction *PoemEditorActions::makeToggle(const QString &text, const QKeySequence &shortcut)
{
    QAction *action = make(text, shortcut);
    action->setCheckable(true);
    return action;
}

void PoemEditorActions::buildMenus()
{
    colorMenu = new QMenu(tr("Textfarbe"));
    colorMenu->addActions(colors);
    spacingMenu = new QMenu(tr("Zeilen- und Absatzabstand"));
    spacingMenu->addActions(spacings);
    imageSizeMenu = new QMenu(tr("Bildgröße ändern"));
    imageSizeMenu->addActions(imageSizes);
    rhymeMenu = new QMenu(tr("Reime"));
    rhymeMenu->addAction(rhymesForSelection);
    rhymeMenu->addSeparator();
    rhymeMenu->addActions(rhymeProviders);

    insertMenu = new QMenu(tr("Einfügen"));
    insertMenu->addAction(insertFooter);
    insertMenu->addAction(insertCaption);
    insertMenu->addAction(insertDivider);
    insertMenu->addAction(insertTab);
    insertMenu->addSeparator();
    insertMenu->addAction(insertImage);
    insertMenu->addMenu(imageSizeMenu);

    viewMenu = new QMenu(tr("Ansicht"));
    viewMenu->addAction(toggleWriterMode);
    viewMenu->addAction(toggleFocusMode);
    viewMenu->addAction(toggleToolbar);
    viewMenu->addAction(toggleNotes);
    viewMenu->addAction(toggleVerse);
    viewMenu->addSeparator();
    viewMenu->addAction(paperAppearance);

    formattingMenu = new QMenu(tr("Textformatierung"));
    formattingMenu->addAction(undo);
    formattingMenu->addAction(redo);
    formattingMenu->addSeparator();
    formattingMenu->addAction(bold);
    formattingMenu->addAction(italic);
    formattingMenu->addAction(underline);
    formattingMenu->addAction(biggerFont);
    formattingMenu->addAction(smallerFont);
    formattingMenu->addSeparator();
    formattingMenu->addAction(alignLeft);
    formattingMenu->addAction(alignCenter);
    formattingMenu->addAction(alignRight);
    formattingMenu->addMenu(spacingMenu);
    formattingMenu->addMenu(colorMenu);
    formattingMenu->addAction(clearFormatting);
    formattingMenu->addSeparator();
    formattingMenu->addMenu(insertMenu);
    formattingMenu->addSeparator();
    formattingMenu->addAction(find);
    formattingMenu->addAction(findNext);
    formattingMenu->addAction(findPrevious);
    formattingMenu->addAction(replace);
    formattingMenu->addSeparator();
    formattingMenu->addAction(checkSpelling);
    formattingMenu->addMenu(rhymeMenu);
    formattingMenu->addSeparator();
    formattingMenu->addAction(duplicate);
}
