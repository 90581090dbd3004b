#include "cli/PoemLookup.h"

#include "archive/ArchiveContext.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"

#include <QCoreApplication>

PoemPtr findPoemArgument(CliInvocation &invocation, const QString &idText)
{
    ArchiveContext *context = invocation.archive();
    if (!context)
        return nullptr;
    const QUuid id(idText.trimmed());
    PoemPtr poem = id.isNull() ? nullptr : context->poemWithID(id);
    if (!poem)
        invocation.fail(CliTexts::tr("Gedicht nicht gefunden: %1").arg(idText));
    return poem;
}

PoemPtr findPoemToChange(CliInvocation &invocation)
{
    if (!invocation.writableArchive())
        return nullptr;
    return findPoemArgument(invocation, invocation.positional().at(0));
}
