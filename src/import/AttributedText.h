#pragma once

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

class QTextDocument;

// The character attributes an imported document keeps for the editor; everything else of
// the source is dropped. Alignment is a paragraph attribute carried on each of its runs.
struct TextAttributes {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    QString fontFamily;   // empty: the editor's font
    double pointSize = 0; // 0: the editor's size
    QColor color;         // invalid: the editor's colour
    Qt::Alignment alignment = Qt::AlignLeft;

    bool operator==(const TextAttributes &other) const = default;
};

struct TextRun {
    QString text;
    TextAttributes attributes;

    bool operator==(const TextRun &other) const = default;
};

// Formatted text as a list of runs; "\n" separates paragraphs. It is plain data, so it
// can cross threads and processes, and becomes a QTextDocument for the editor.
class AttributedText {
public:
    AttributedText() = default;
    explicit AttributedText(QList<TextRun> runs);

    // Merges with the last run when the attributes are the same.
    void append(const QString &text, const TextAttributes &attributes);
    void append(const AttributedText &other);

    const QList<TextRun> &runs() const { return m_runs; }
    QString plainText() const;
    bool isEmpty() const;

    std::unique_ptr<QTextDocument> toTextDocument() const;

    QByteArray serialized() const;
    static std::optional<AttributedText> deserialized(const QByteArray &bytes);

    bool operator==(const AttributedText &other) const = default;

private:
    QList<TextRun> m_runs;
};
