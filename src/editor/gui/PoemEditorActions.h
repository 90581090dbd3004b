#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

class QAction;
class QMenu;
class QWidget;

// Every action of the poem editor, with its German label and word-processor shortcut, and
// the menus that group them. Shortcuts work while the focus is inside the owner widget.
class PoemEditorActions : public QObject {
    Q_OBJECT

public:
    explicit PoemEditorActions(QWidget *owner);
    ~PoemEditorActions() override;

    QAction *undo;
    QAction *redo;
    QAction *bold;
    QAction *italic;
    QAction *underline;
    QAction *biggerFont;
    QAction *smallerFont;
    QAction *alignLeft;
    QAction *alignCenter;
    QAction *alignRight;
    QAction *clearFormatting;
    QAction *checkSpelling;
    QAction *insertFooter;
    QAction *insertCaption;
    QAction *insertDivider;
    QAction *insertTab;
    QAction *insertImage;
    QAction *find;
    QAction *findNext;
    QAction *findPrevious;
    QAction *replace;
    QAction *rhymes;
    QAction *rhymesForSelection;
    QAction *toggleNotes;
    QAction *toggleWriterMode;
    QAction *toggleFocusMode;
    QAction *toggleToolbar;
    QAction *paperAppearance;
    // "Versmaß": the verse gutter and the metre.
    QAction *toggleVerse;
    QAction *duplicate;
    // In the order of their option tables; each carries its case as data.
    QList<QAction *> colors;
    QList<QAction *> spacings;
    QList<QAction *> imageSizes;
    QList<QAction *> rhymeProviders;

    QMenu *colorMenu;
    QMenu *spacingMenu;
    QMenu *imageSizeMenu;
    QMenu *rhymeMenu;
    QMenu *insertMenu;
    QMenu *viewMenu;
    // "Textformatierung": everything above, for a window's menu bar.
    QMenu *formattingMenu;

private:
    QAction *make(const QString &text, const QKeySequence &shortcut = {});
    QAction *makeToggle(const QString &text, const QKeySequence &shortcut = {});
    void buildMenus();

    QWidget *m_owner;
};
