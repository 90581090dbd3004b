#pragma once

#include "analysis/CategoryStatistic.h"
#include "archive/Poem.h"
#include "archive/Result.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QImage>
#include <QJsonObject>
#include <QList>
#include <QStringList>

#include <optional>

// A summary of the active archive: how complete it is, overall and per category, and
// what is still to do.
class StatisticsReport {
    Q_DECLARE_TR_FUNCTIONS(StatisticsReport)

public:
    // Poems in the trash are left out.
    static StatisticsReport make(const QList<PoemPtr> &poems, const QDateTime &now = QDateTime::currentDateTime());
    static StatisticsReport make(const QList<PoemStatisticSnapshot> &snapshots, const QDateTime &now);

    QDateTime createdAt;
    StatisticCounts counts;
    QList<CategoryStatistic> categories; // most poems first
    std::optional<QDateTime> lastUpdated;

    int totalPoems() const { return counts.total; }
    int unpublished() const { return counts.total - counts.published; }
    int notInPodcast() const { return counts.total - counts.podcast; }
    int openTasksCount() const { return counts.withoutText + counts.withoutDate; }
    QString attentionSummary() const;

    // The JSON file, its keys in the documented order.
    QByteArray jsonDocument() const;
    QJsonObject toJson() const;
    // The report as text, line by line: the command line prints it, the PDF shows it.
    QStringList textLines() const;
    QString pdfBody() const { return textLines().join(QLatin1Char('\n')); }
    QString categoryLine(const CategoryStatistic &category) const;

    // German display forms, whatever the interface language.
    static QString percentText(double fraction);
    static QString dateTimeText(const QDateTime &dateTime);

    static QString pdfTitle();
    // "OdeLeaf-Statistik-" and the local day.
    static QString proposedPdfFileName(const QDateTime &now);
    static QString proposedJsonFileName(const QDateTime &now);
    static QString openTasksHeading();
    static QString completeHeading();

    static QString jsonSaved(const QString &path);
    static QString jsonFailed(const QString &reason);
    static QString pdfSaved(const QString &path);
    static QString pdfFailed(const QString &reason);

    // Writes the JSON file atomically.
    Result<void> saveJson(const QString &path) const;
    Result<void> savePdf(const QString &path, const QImage &logo = {}) const;
};
