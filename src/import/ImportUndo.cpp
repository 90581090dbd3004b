#include "import/ImportUndo.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemVersion.h"
#include "archive/VersionReason.h"
#include "import/ImportStateFiles.h"

QString ImportUndo::nothingToUndoText()
{
    return tr("Kein Import zum Rückgängigmachen vorhanden.");
}

Result<QString> ImportUndo::undoLastImport(ArchiveContext &context, const QDateTime &now)
{
    const auto failure = [](const QString &reason) { return Error{tr("Rückgängig fehlgeschlagen: %1").arg(reason)}; };
    const auto loaded = ImportStateFiles::loadUndo();
    if (!loaded)
        return failure(loaded.errorMessage());
    if (!loaded->has_value() || (*loaded)->isEmpty())
        return nothingToUndoText();
    int restored = 0;
    const VersionReason reason(context,
                               PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Import rückgängig")));
    for (const ImportUndoItem &item : **loaded) {
        const PoemPtr poem = context.poemWithID(item.id);
        // A poem that already has its old body was not changed by the import (or was undone).
        if (!poem || (poem->text() == item.previousText && poem->richTextData() == item.previousRichTextData))
            continue;
        poem->setText(item.previousText);
        poem->setRichTextData(item.previousRichTextData);
        poem->setUpdatedAt(now);
        ++restored;
    }
    if (auto saved = context.save(); !saved) {
        context.rollback();
        return failure(saved.errorMessage());
    }
    // Only now: a crash before this point leaves the file, and undoing twice is harmless.
    if (auto cleared = ImportStateFiles::clearUndo(); !cleared)
        return failure(cleared.errorMessage());
    if (restored == 1)
        return tr("Letzter Import rückgängig gemacht: 1 Gedicht wiederhergestellt.");
    return tr("Letzter Import rückgängig gemacht: %1 Gedichte wiederhergestellt.").arg(restored);
}
