#include "import/ImportWorkItem.h"

#include <QDir>

#include <algorithm>

QString ImportWorkItem::displayTitle(const std::optional<QString> &title)
{
    if (!title)
        return tr("(unbekannt)");
    return title->trimmed().isEmpty() ? tr("(ohne Titel)") : *title;
}

QList<ImportWorkItem> ImportWorkItem::fromProposals(const QList<ImportProposal> &proposals, const QString &folder,
                                                    const TitleLookup &titleOf)
{
    QList<ImportWorkItem> items;
    const QDir root(folder);
    for (const ImportProposal &proposal : proposals) {
        const auto poemID = proposal.chosenPoemID();
        if (!poemID)
            continue;
        QList<double> scores;
        for (const MatchCandidate &candidate : proposal.candidates)
            scores.append(candidate.score);
        std::sort(scores.begin(), scores.end(), std::greater<>());
        ImportWorkItem item;
        item.poemID = *poemID;
        item.poemTitle = displayTitle(titleOf(*poemID));
        item.fileName = proposal.fileName;
        item.bestScore = scores.value(0, 0.0);
        item.secondBestScore = scores.value(1, 0.0);
        item.filePath = root.filePath(proposal.relativePath);
        items.append(std::move(item));
    }
    return items;
}
