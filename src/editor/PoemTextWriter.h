#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

class ArchiveContext;
class Poem;

// Keeps a poem's two forms of its body in step: the formatted text is written, the plain
// text only when it really differs, updatedAt is stamped, and the whole change is one save.
class PoemTextWriter {
public:
    static Result<void> write(ArchiveContext &context, Poem &poem, const QByteArray &richTextData,
                              const QString &plainText, const QDateTime &now);
};
