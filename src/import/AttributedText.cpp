#include "import/AttributedText.h"

#include <QDataStream>
#include <QIODevice>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace {

constexpr quint32 streamMagic = 0x4F4C4154; // "OLAT"
constexpr quint16 streamVersion = 1;
constexpr qsizetype maximumRuns = 10'000'000;

QTextCharFormat charFormat(const TextAttributes &attributes)
{
    QTextCharFormat format;
    if (attributes.bold)
        format.setFontWeight(QFont::Bold);
    format.setFontItalic(attributes.italic);
    format.setFontUnderline(attributes.underline);
    if (!attributes.fontFamily.isEmpty())
        format.setFontFamilies({attributes.fontFamily});
    if (attributes.pointSize > 0)
        format.setFontPointSize(attributes.pointSize);
    if (attributes.color.isValid())
        format.setForeground(attributes.color);
    return format;
}

QTextBlockFormat blockFormat(const TextAttributes &attributes)
{
    QTextBlockFormat format;
    format.setAlignment(attributes.alignment);
    return format;
}

} // namespace

AttributedText::AttributedText(QList<TextRun> runs)
{
    for (const TextRun &run : runs)
        append(run.text, run.attributes);
}

void AttributedText::append(const QString &text, const TextAttributes &attributes)
{
    if (text.isEmpty())
        return;
    if (!m_runs.isEmpty() && m_runs.last().attributes == attributes) {
        m_runs.last().text.append(text);
        return;
    }
    m_runs.append({text, attributes});
}

void AttributedText::append(const AttributedText &other)
{
    for (const TextRun &run : other.m_runs)
        append(run.text, run.attributes);
}

QString AttributedText::plainText() const
{
    QString text;
    for (const TextRun &run : m_runs)
        text.append(run.text);
    return text;
}

bool AttributedText::isEmpty() const
{
    return m_runs.isEmpty();
}

std::unique_ptr<QTextDocument> AttributedText::toTextDocument() const
{
    auto document = std::make_unique<QTextDocument>();
    QTextCursor cursor(document.get());
    bool blockStarted = false;
    for (const TextRun &run : m_runs) {
        const QTextCharFormat format = charFormat(run.attributes);
        const QList<QStringView> pieces = QStringView(run.text).split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            if (i > 0) {
                cursor.insertBlock(blockFormat(run.attributes), format);
                blockStarted = false;
            }
            if (pieces.at(i).isEmpty())
                continue;
            if (!blockStarted) {
                // A paragraph takes its alignment from its first run.
                cursor.setBlockFormat(blockFormat(run.attributes));
                blockStarted = true;
            }
            cursor.insertText(pieces.at(i).toString(), format);
        }
    }
    return document;
}

QByteArray AttributedText::serialized() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << streamMagic << streamVersion << qint64(m_runs.size());
    for (const TextRun &run : m_runs) {
        const TextAttributes &a = run.attributes;
        stream << run.text << a.bold << a.italic << a.underline << a.fontFamily << a.pointSize << a.color
               << qint32(a.alignment.toInt());
    }
    return bytes;
}

std::optional<AttributedText> AttributedText::deserialized(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 magic = 0;
    quint16 version = 0;
    qint64 count = 0;
    stream >> magic >> version >> count;
    if (stream.status() != QDataStream::Ok || magic != streamMagic || version != streamVersion || count < 0 ||
        count > maximumRuns)
        return std::nullopt;
    QList<TextRun> runs;
    for (qint64 i = 0; i < count; ++i) {
        TextRun run;
        TextAttributes &a = run.attributes;
        qint32 alignment = 0;
        stream >> run.text >> a.bold >> a.italic >> a.underline >> a.fontFamily >> a.pointSize >> a.color >> alignment;
        if (stream.status() != QDataStream::Ok)
            return std::nullopt;
        a.alignment = Qt::Alignment::fromInt(alignment);
        runs.append(std::move(run));
    }
    return AttributedText(std::move(runs));
}
