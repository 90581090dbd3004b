#include "archive/PoemFactory.h"

#include "archive/ArchiveContext.h"
#include "matching/TitleKey.h"

#include <QCoreApplication>

PoemPtr PoemFactory::makeNewPoem(ArchiveContext &context, const QDateTime &now)
{
    PoemPtr poem = context.insertPoem();
    poem->setId(QUuid::createUuid());
    poem->setTitle(QString());
    poem->setTitleNormalized(QString());
    poem->setDate(now);
    poem->setCreatedAt(now);
    poem->setUpdatedAt(now);
    return poem;
}

PoemPtr PoemFactory::makeDuplicate(ArchiveContext &context, const Poem &source, const QDateTime &now)
{
    const QString title = duplicateTitle(source.title());
    PoemPtr copy = context.insertPoem();
    copy->setId(QUuid::createUuid());
    copy->setTitle(title);
    copy->setTitleNormalized(normalize(title));
    copy->setCategory(source.category());
    copy->setDate(source.date());
    copy->setText(source.text());
    copy->setRichTextData(source.richTextData());
    copy->setPublished(source.isPublished());
    copy->setInPodcast(source.inPodcast());
    copy->setCreatedAt(now);
    copy->setUpdatedAt(now);
    // Notes and the external id stay behind on purpose: the copy is a new poem.
    return copy;
}

QString PoemFactory::duplicateTitle(const std::optional<QString> &sourceTitle)
{
    QString base = sourceTitle.value_or(QString()).trimmed();
    if (base.isEmpty())
        base = QCoreApplication::translate("PoemFactory", "Gedicht");
    return QCoreApplication::translate("PoemFactory", "%1 Kopie").arg(base);
}
