#pragma once

#include "verse/VerseAnalysis.h"

#include <QPointer>
#include <QSet>
#include <QWidget>

class QTextDocument;
class RichPoemTextView;
class StressPatternOverlay;

// The narrow column right of the poem text: per verse line its syllable count and rhyme
// letter, level with the line as laid out. Lines of one rhyme share a colour, an impure rhyme
// takes its partner's colour, lighter. Hovering a line, here or in the text, shows its
// stresses above its words.
class VerseGutter : public QWidget {
    Q_OBJECT

public:
    explicit VerseGutter(RichPoemTextView *view, QWidget *parent = nullptr);

    void setAnalysis(const VerseAnalysis &analysis);
    const VerseAnalysis &analysis() const { return m_analysis; }
    // Marks the lines that go against the metre, in the gutter and in the text.
    void setBreakingLinesMarked(bool marked);
    bool breakingLinesMarked() const { return m_markBreaking; }
    // After the view got a new document.
    void watchDocument();

    // The poem's text as the gutter's lines count it: a line per paragraph or line break,
    // captions under pictures left without words so they never count as verse.
    static QString verseText(const QTextDocument &document);
    // The document position where each of those lines starts.
    static QList<int> lineStarts(const QTextDocument &document);
    // The colour of a rhyme letter; impure rhymes are drawn lighter.
    static QColor rhymeColor(const QString &letter);
    // Vertical extent of each verse line with words, in this widget's coordinates.
    QList<QPair<const VerseLine *, QRect>> lineRects() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void hoverAt(int documentPosition);
    void showHovered(const VerseLine *line);
    void markInText();

    RichPoemTextView *m_view;
    StressPatternOverlay *m_overlay;
    QPointer<QTextDocument> m_watched;
    VerseAnalysis m_analysis;
    // Lines that share their letter with another line of their stanza.
    QSet<int> m_rhymingLines;
    bool m_markBreaking = false;
};
