#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

#include <optional>

// How a poem's fields read in a library row.
class PoemRowText {
    Q_DECLARE_TR_FUNCTIONS(PoemRowText)

public:
    // False for nil, empty and white-space-only text.
    static bool hasUsableText(const QString &text);
    static bool hasUsableText(const std::optional<QString> &text);
    // Line feeds become spaces, then trimmed.
    static QString title(const std::optional<QString> &title);
    // White-space runs collapsed to one space, trimmed; longer than 120 characters is cut
    // to 117 and "..." is added.
    static QString excerpt(const QString &text);
    static QString dateText(const std::optional<QDateTime> &date);
    static QString statusText(bool isPublished, bool inPodcast);

    static constexpr qsizetype excerptLimit = 120;
    static constexpr qsizetype excerptCut = 117;
};
