#include "archive/PoemEdit.h"

#include "archive/ArchiveContext.h"
#include "matching/TitleKey.h"

Result<void> PoemEdit::apply(ArchiveContext &context, Poem &poem, const std::function<void(Poem &)> &change,
                             const QDateTime &now)
{
    change(poem);
    poem.setUpdatedAt(now);
    return context.save();
}

void PoemEdit::setTitle(Poem &poem, const QString &title)
{
    poem.setTitle(title);
    poem.setTitleNormalized(normalize(title.trimmed()));
}
