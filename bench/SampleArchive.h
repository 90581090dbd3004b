#pragma once

#include "ArchiveFixtures.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "editor/PoemRichText.h"

#include <QDateTime>

// A poet's archive for measuring: poems of about 600 characters of German text with the
// rich text the editor stores for them, in 30 categories, one in ten without text, some
// published or in the podcast. Saved at once.
inline Result<void> fillSampleArchive(ArchiveContext &context, int count)
{
    ArchiveFixtures fixtures;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (int i = 0; i < count; ++i) {
        PoemPtr poem = PoemFactory::makeNewPoem(context, now.addSecs(-i * 60));
        PoemEdit::setTitle(*poem, fixtures.title());
        if (fixtures.next() % 10 != 0) {
            poem->setText(fixtures.text(600));
            poem->setRichTextData(PoemRichText::encodePlainText(*poem->text()).value());
        }
        poem->setCategory(QStringLiteral("Zyklus %1").arg(i % 30));
        poem->setPublished(fixtures.next() % 3 == 0);
        poem->setInPodcast(fixtures.next() % 7 == 0);
    }
    return context.save();
}
