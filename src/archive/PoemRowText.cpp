#include "archive/PoemRowText.h"

#include <QCoreApplication>
#include <QTextBoundaryFinder>

#include <algorithm>

bool PoemRowText::hasUsableText(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return !c.isSpace(); });
}

bool PoemRowText::hasUsableText(const std::optional<QString> &text)
{
    return text && hasUsableText(*text);
}

QString PoemRowText::title(const std::optional<QString> &title)
{
    if (!title)
        return {};
    QString line = *title;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return line.trimmed();
}

QString PoemRowText::excerpt(const QString &text)
{
    QString collapsed;
    collapsed.reserve(std::min<qsizetype>(text.size(), 4 * excerptLimit));
    bool pendingSpace = false;
    for (const QChar c : text) {
        if (c.isSpace()) {
            pendingSpace = !collapsed.isEmpty();
            continue;
        }
        if (pendingSpace)
            collapsed.append(QLatin1Char(' '));
        pendingSpace = false;
        collapsed.append(c);
    }
    if (collapsed.isEmpty())
        return tr("Noch kein Gedichttext hinterlegt.");
    // The limits count characters as a reader sees them: a letter with its combining marks,
    // or a pair of surrogates, is one, and a cut never separates them.
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, collapsed);
    qsizetype cut = 0;
    int count = 0;
    while (characters.toNextBoundary() != -1) {
        ++count;
        if (count == excerptCut)
            cut = characters.position();
        if (count > excerptLimit)
            return collapsed.left(cut) + QStringLiteral("...");
    }
    return collapsed;
}

QString PoemRowText::dateText(const std::optional<QDateTime> &date)
{
    if (!date || !date->isValid())
        return tr("unbekannt");
    return date->toLocalTime().toString(tr("dd.MM.yyyy"));
}

QString PoemRowText::statusText(bool isPublished, bool inPodcast)
{
    if (isPublished && inPodcast)
        return tr("Veröffentlicht") + QStringLiteral(" \u00B7 ") + tr("Podcast");
    if (isPublished)
        return tr("Veröffentlicht");
    if (inPodcast)
        return tr("Podcast");
    return tr("Entwurf");
}
