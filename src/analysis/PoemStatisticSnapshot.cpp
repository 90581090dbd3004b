#include "analysis/PoemStatisticSnapshot.h"

#include "archive/Poem.h"
#include "archive/PoemRowText.h"

PoemStatisticSnapshot::PoemStatisticSnapshot(const Poem &poem)
    : category(poem.category().value_or(QString()).trimmed()), hasText(PoemRowText::hasUsableText(poem.text())),
      hasDate(poem.date().has_value()), isPublished(poem.isPublished()), inPodcast(poem.inPodcast()),
      updatedAt(poem.updatedAt())
{
}
