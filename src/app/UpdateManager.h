#pragma once

#include "app/UpdateCheckOutcome.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QVersionNumber>

#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

// The program's updater: reads the update feed over HTTP, compares its newest version
// with the running one and reports the outcome. Mirrors three observable values for the
// menu and the settings window; the two settings persist in the preferences.
class UpdateManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    Q_PROPERTY(bool automaticallyChecksForUpdates READ automaticallyChecksForUpdates WRITE
                   setAutomaticallyChecksForUpdates NOTIFY automaticallyChecksForUpdatesChanged)

public:
    // The feed address the program was built with; empty when the package manager
    // brings the updates.
    static QUrl defaultFeedUrl();
    static constexpr qint64 automaticCheckInterval = 24 * 60 * 60; // seconds
    static constexpr qint64 maximumFeedSize = 4 * 1024 * 1024;

    explicit UpdateManager(QObject *parent = nullptr);
    UpdateManager(QUrl feedUrl, QVersionNumber currentVersion, QObject *parent = nullptr);
    ~UpdateManager() override;

    bool canCheckForUpdates() const { return m_canCheck; }
    bool automaticallyChecksForUpdates() const { return m_automatic; }
    void setAutomaticallyChecksForUpdates(bool enabled);
    std::optional<QDateTime> lastUpdateCheckDate() const { return m_lastCheck; }
    QVersionNumber currentVersion() const { return m_currentVersion; }
    QUrl feedUrl() const { return m_feedUrl; }
    // Without a feed nothing is ever checked and canCheckForUpdates stays false.
    bool hasFeed() const;

    // Starts the automatic checks: one now if due, then a look every hour.
    void start();
    // Asks the feed now; the outcome is shown to the user whatever it is.
    void checkForUpdates();
    // The automatic check: at most once a day, only when enabled; silent unless something
    // new. Only a check that read the feed counts as the day's check.
    bool checkInBackgroundIfDue(const QDateTime &now = QDateTime::currentDateTimeUtc());

Q_SIGNALS:
    void canCheckForUpdatesChanged(bool canCheck);
    void automaticallyChecksForUpdatesChanged(bool enabled);
    void lastUpdateCheckDateChanged();
    void checkFinished(const UpdateCheckOutcome &outcome);
    void preferenceNotStored(const QString &message);

private:
    void beginCheck(bool userInitiated);
    void finishCheck(QNetworkReply *reply);
    UpdateCheckOutcome outcomeOf(QNetworkReply *reply) const;
    void setCanCheck(bool canCheck);

    QUrl m_feedUrl;
    QVersionNumber m_currentVersion;
    QNetworkAccessManager *m_network;
    QPointer<QNetworkReply> m_reply;
    QTimer m_schedule;
    bool m_userInitiated = false;
    bool m_canCheck = true;
    bool m_automatic = true;
    std::optional<QDateTime> m_lastCheck;
};
