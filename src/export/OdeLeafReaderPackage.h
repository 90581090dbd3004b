#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// How a stretch of the reader's text is aligned; the raw values are the file's.
enum class TextAlignment { natural, left, center, right, justified };

QString rawValue(TextAlignment alignment);
std::optional<TextAlignment> textAlignmentFromRaw(const QString &raw);

// One stretch of the rich text with one alignment, in UTF-16 code units.
struct ParagraphAlignment {
    int location = 0;
    int length = 0;
    TextAlignment alignment = TextAlignment::natural;

    bool operator==(const ParagraphAlignment &other) const = default;
};

// One poem as the companion reader app receives it.
struct ReaderPoem {
    QString id;
    QString title;
    QString titleNormalized;
    std::optional<QString> category;
    std::optional<QDateTime> date;
    QString text;
    QString excerpt;
    bool isPublished = false;
    bool inPodcast = false;
    std::optional<QDateTime> createdAt;
    std::optional<QDateTime> updatedAt;
    std::optional<QList<ParagraphAlignment>> paragraphAlignments;
    std::optional<QByteArray> richTextData;

    bool operator==(const ReaderPoem &other) const = default;
};

// The document handed to the reader app: the active poems and the category list.
struct OdeLeafReaderPackage {
    static constexpr const char *formatName = "odeLeaf.readerPackage";
    static constexpr int currentSchemaVersion = 1;

    QString format = QString::fromLatin1(formatName);
    int schemaVersion = currentSchemaVersion;
    QDateTime exportedAt;
    int poemCount = 0;
    QStringList categories;
    QList<ReaderPoem> poems;

    bool operator==(const OdeLeafReaderPackage &other) const = default;
};
