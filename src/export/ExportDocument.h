#pragma once

#include <QString>
#include <QStringList>

#include <memory>

class PoemTextDocument;

// What the exporters lay out for one poem. The rich text, when present, wins over the
// plain text.
struct ExportDocument {
    QString title;
    QStringList metaLines; // date, category and the like, already worded by the caller
    QString plainText;
    std::shared_ptr<const PoemTextDocument> richText;

    bool hasRichText() const;
};
