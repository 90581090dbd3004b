#include "import/TextCleanup.h"

#include <QStringList>

namespace {

QString unifiedLineEnds(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

using Line = QList<TextRun>;

// CR LF may straddle two runs; the pair becomes one line feed, as in the plain text.
QList<TextRun> runsWithUnifiedLineEnds(const QList<TextRun> &runs)
{
    QList<TextRun> result;
    for (qsizetype i = 0; i < runs.size(); ++i) {
        TextRun run = runs.at(i);
        if (run.text.endsWith(QLatin1Char('\r')) && i + 1 < runs.size() &&
            runs.at(i + 1).text.startsWith(QLatin1Char('\n')))
            run.text.chop(1); // the next run's line feed ends the line
        run.text = unifiedLineEnds(run.text);
        result.append(std::move(run));
    }
    return result;
}

QList<Line> splitIntoLines(const QList<TextRun> &runs)
{
    QList<Line> lines(1);
    for (const TextRun &run : runs) {
        const QList<QStringView> pieces = QStringView(run.text).split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            if (i > 0)
                lines.append(Line());
            if (!pieces.at(i).isEmpty())
                lines.last().append({pieces.at(i).toString(), run.attributes});
        }
    }
    return lines;
}

bool isSpace(QChar c)
{
    return c.isSpace();
}

// Trims white space across run borders; runs left empty are dropped.
Line trimmed(Line line)
{
    while (!line.isEmpty()) {
        QString &text = line.first().text;
        qsizetype start = 0;
        while (start < text.size() && isSpace(text.at(start)))
            ++start;
        text.remove(0, start);
        if (!text.isEmpty())
            break;
        line.removeFirst();
    }
    while (!line.isEmpty()) {
        QString &text = line.last().text;
        qsizetype end = text.size();
        while (end > 0 && isSpace(text.at(end - 1)))
            --end;
        text.truncate(end);
        if (!text.isEmpty())
            break;
        line.removeLast();
    }
    return line;
}

} // namespace

QString TextCleanup::cleanup(const QString &text)
{
    const QStringList lines = unifiedLineEnds(text).split(QLatin1Char('\n'));
    QStringList kept;
    int blankRun = 0;
    for (const QString &line : lines) {
        const QString trimmedLine = line.trimmed();
        if (!trimmedLine.isEmpty()) {
            kept.append(trimmedLine);
            blankRun = 0;
            continue;
        }
        if (++blankRun == 1)
            kept.append(QString());
    }
    return kept.join(QLatin1Char('\n')).trimmed();
}

AttributedText TextCleanup::cleanupAttributed(const AttributedText &text)
{
    QList<Line> kept;
    int blankRun = 0;
    for (const Line &line : splitIntoLines(runsWithUnifiedLineEnds(text.runs()))) {
        Line trimmedLine = trimmed(line);
        if (!trimmedLine.isEmpty()) {
            kept.append(std::move(trimmedLine));
            blankRun = 0;
            continue;
        }
        if (++blankRun == 1)
            kept.append(Line());
    }
    while (!kept.isEmpty() && kept.first().isEmpty())
        kept.removeFirst();
    while (!kept.isEmpty() && kept.last().isEmpty())
        kept.removeLast();

    AttributedText result;
    TextAttributes lineBreakAttributes;
    for (qsizetype i = 0; i < kept.size(); ++i) {
        if (i > 0)
            result.append(QStringLiteral("\n"), lineBreakAttributes);
        for (const TextRun &run : std::as_const(kept.at(i))) {
            result.append(run.text, run.attributes);
            lineBreakAttributes = run.attributes;
        }
    }
    return result;
}
