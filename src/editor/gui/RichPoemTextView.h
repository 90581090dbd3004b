#pragma once

#include "editor/EditorAppearance.h"
#include "editor/RichTextCommand.h"

#include <QImage>
#include <QPointer>
#include <QTextEdit>
#include <QTimer>

#include <memory>

class PoemTextDocument;
class PoemTextHighlighter;
class SpellChecker;

// The rich-text editor of a poem body. Toolbar and menus never touch the text themselves:
// they send RichTextCommands, each applied here as one undo step. Spelling and the search
// highlight are drawn in the layout only.
class RichPoemTextView : public QTextEdit {
    Q_OBJECT

public:
    // A verse line of forty characters, which the editor keeps unwrapped at any width.
    static QString sampleVerseLine();
    static constexpr double minimumInset = 8;
    // The smallest the text is shown to keep a verse line whole.
    static constexpr double minimumTextScale = 0.6;
    double textScale() const { return m_textScale; }

    explicit RichPoemTextView(QWidget *parent = nullptr);
    ~RichPoemTextView() override;

    // Takes the document over; the previous one is deleted.
    void setPoemDocument(std::unique_ptr<PoemTextDocument> document);
    PoemTextDocument *poemDocument() const;

    void setSpellChecker(SpellChecker *spellChecker);
    void setSearchHighlight(const QString &term);
    void setAppearance(EditorAppearance appearance);
    EditorAppearance appearance() const { return m_appearance; }
    // Takes over a new editor font for what is typed from now on; text that carries a
    // font of its own keeps it.
    void refreshEditorFont();

    // Applies a command; an image that cannot be read is reported through imageFailed.
    void apply(const RichTextCommand &command);
    // The width text is laid out in, in points.
    double textWidth() const;
    // Selects the next misspelt word after the cursor; false when there is none.
    bool selectNextMisspelling();
    // The selection, or the word at the cursor.
    QString wordForLookup() const;

Q_SIGNALS:
    void imageFailed(const QString &message);
    void rhymeLookupRequested();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    void applyInsets();
    void keepTypingAttributesComplete();
    void restartCaretBlink();
    void insertRichFragment(const QByteArray &rtf);
    void addSpellingActions(QMenu *menu, const QPoint &position);

    QPointer<PoemTextHighlighter> m_highlighter;
    SpellChecker *m_spellChecker = nullptr;
    QString m_searchHighlight;
    EditorAppearance m_appearance = EditorAppearance::standard;
    // Laid out for this device, the text shows smaller without a change to the stored sizes.
    QImage m_scaledLayoutDevice;
    double m_textScale = 1.0;
    QTextCharFormat m_defaults;
    QTimer m_caretBlink;
    bool m_caretShown = true;
};
