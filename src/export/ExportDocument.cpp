#include "export/ExportDocument.h"

#include "editor/PoemTextDocument.h"

bool ExportDocument::hasRichText() const
{
    // A document always ends in one paragraph separator of its own.
    return richText && richText->characterCount() > 1;
}
