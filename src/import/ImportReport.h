#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

// What one import run did with each file, as the report window shows it and as
// "last_import_report.json" keeps it until the next run.
struct ImportReport {
    Q_DECLARE_TR_FUNCTIONS(ImportReport)

public:
    enum class Status { imported, skipped, failed };

    struct Item {
        Status status = Status::imported;
        QString fileName;
        QString poemTitle;
        std::optional<QString> reason;

        bool operator==(const Item &other) const = default;
    };

    QDateTime createdAt;
    QString title;
    QString summary;
    QList<Item> items;
    // The poet stopped the run; the items are the files it reached.
    bool cancelled = false;

    bool operator==(const ImportReport &other) const = default;

    // "Import mit Hinweisen abgeschlossen" as soon as one file was skipped or failed; a
    // cancelled run says so first, whatever its files did.
    QString headline() const;
    QString checkedFilesText() const;

    static QString rawValue(Status status);
    static std::optional<Status> statusFromRaw(const QString &raw);
    static QString displayTitle(Status status);
    // Stored as they are (German, the keys of their translations); shown through displayed*.
    static QString textImportTitle();
    static QString imageImportTitle();
    QString displayedTitle() const;
    static QString displayedReason(const QString &storedReason);

    QJsonObject toJson() const;
    static std::optional<ImportReport> fromJson(const QJsonObject &object);
};
