#pragma once

#include "archive/Poem.h"
#include "editor/EditorAppearance.h"
#include "editor/PoemTextSync.h"
#include "editor/RhymeProvider.h"
#include "editor/RichTextCommand.h"
#include "editor/WritingStats.h"

#include <QWidget>

#include <memory>

class ArchiveContext;
class EditorToolBar;
class FindReplaceBar;
class PoemEditorActions;
class QMenu;
class QPlainTextEdit;
class QSplitter;
class RichPoemTextView;
class BackgroundVerseAnalyzer;
class SpellChecker;
class VerseGutter;
class WritingStatsBar;

// The writing surface of the detail pane: the formatted poem body with its toolbar, the find
// and replace bar, the writer's notes and the statistics bar. Every change is written to the
// record at once (formatted and plain text in step, updatedAt stamped, one save).
class PoemEditorPane : public QWidget {
    Q_OBJECT

public:
    explicit PoemEditorPane(ArchiveContext &context, QWidget *parent = nullptr);
    ~PoemEditorPane() override;

    // Null shows an empty, disabled editor.
    void setPoem(PoemPtr poem);
    // The pane's own "Gespeichert"; off where the surrounding view shows one for the whole poem.
    void setSaveStatusShown(bool shown);
    PoemPtr poem() const { return m_poem; }
    // The library's search text, marked in the body for display only.
    void setSearchHighlight(const QString &text);
    void setAppearance(EditorAppearance appearance);
    EditorAppearance appearance() const { return m_appearance; }
    // A read-only pane (a poem in the trash) shows the text in the appearance's colour and
    // "— kein Text —" when there is none.
    void setEditable(bool editable);
    bool isEditable() const { return m_editable; }

    // Toolbar and menus act on the text through commands; without a poem they are dropped.
    void send(const RichTextCommand &command);
    // "Textformatierung", for the window's menu bar.
    QMenu *formattingMenu() const;
    PoemEditorActions *actions() const { return m_actions; }

    bool isWriterMode() const { return m_isWriterMode; }
    void setWriterMode(bool writerMode);
    bool isFocusMode() const { return m_isFocusMode; }
    void setFocusMode(bool focusMode);
    void setWriterToolbarHidden(bool hidden);
    void setWriterNotesVisible(bool visible);
    void setFindReplaceVisible(bool visible);
    bool isFindReplaceVisible() const { return m_showFindReplace; }

    // Opens the result page of a rhyme site for the word at the cursor or the selection.
    void lookUpRhymes(RhymeProvider provider);

    QString saveStatus() const { return m_saveStatus; }
    QString findReplaceStatus() const;
    WritingStats stats() const { return m_stats; }
    RichPoemTextView *textView() const { return m_view; }
    // Null until the dictionary has loaded.
    SpellChecker *spellChecker() const { return m_spellChecker.get(); }
    FindReplaceBar *findReplaceBar() const { return m_findBar; }
    VerseGutter *verseGutter() const { return m_gutter; }
    WritingStatsBar *statsBar() const { return m_statsBar; }
    bool showsVerseTools() const { return m_showVerse; }
    void setVerseToolsShown(bool shown);
    EditorToolBar *toolBar() const { return m_toolBar; }

Q_SIGNALS:
    // "Gespeichert" after each successful write, "apply/save failed" when the save failed.
    void saveStatusChanged(const QString &status);
    // listAffected: the plain text changed (list excerpt, "has text").
    void poemChanged(bool listAffected);
    void duplicateRequested();
    void statusMessage(const QString &message);
    void writerModeChanged(bool writerMode);

private:
    void buildLayout();
    void loadSpellChecker();
    void connectActions();
    void showCurrentFormat();
    void loadFromPoem();
    void reloadIfNeeded();
    void writeText();
    void writeNotes();
    void setSaveStatus(const QString &status);
    void updateStats();
    void analyseVerse();
    void showVerseAnalysis();
    void updateChrome();
    void chooseImage();
    void findInText(bool backwards);
    void replaceCurrent();
    void replaceAll();
    void openFindBar(bool focusReplace);
    bool poemIsInContext() const;

    ArchiveContext &m_context;
    PoemPtr m_poem;
    PoemTextSync m_sync;
    // The text model as last loaded or written, encoded.
    QByteArray m_lastEncoded;
    std::unique_ptr<SpellChecker> m_spellChecker;
    EditorAppearance m_appearance = EditorAppearance::standard;
    QString m_highlight;
    bool m_editable = true;
    bool m_loadingNotes = false;

    bool m_isWriterMode = false;
    bool m_isFocusMode = false;
    bool m_showFindReplace = false;
    bool m_isWriterToolbarHidden = false;
    bool m_isWriterNotesVisible = false;
    QString m_saveStatus;
    WritingStats m_stats;

    PoemEditorActions *m_actions;
    EditorToolBar *m_toolBar = nullptr;
    FindReplaceBar *m_findBar = nullptr;
    RichPoemTextView *m_view = nullptr;
    QWidget *m_editorArea = nullptr;
    QWidget *m_notesPanel = nullptr;
    QPlainTextEdit *m_notes = nullptr;
    QSplitter *m_splitter = nullptr;
    WritingStatsBar *m_statsBar = nullptr;
    VerseGutter *m_gutter = nullptr;
    BackgroundVerseAnalyzer *m_verseAnalyzer = nullptr;
    bool m_showVerse = true;
};
