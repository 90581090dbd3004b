#include "app/UpdateManager.h"

#include "app/UpdateFeed.h"
#include "archive/AppPreferences.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#ifndef ODELEAF_UPDATE_FEED_URL
#define ODELEAF_UPDATE_FEED_URL ""
#endif

namespace {

constexpr int transferTimeoutMs = 20000;
constexpr int scheduleIntervalMs = 60 * 60 * 1000;

} // namespace

QUrl UpdateManager::defaultFeedUrl()
{
    return QUrl(QStringLiteral(ODELEAF_UPDATE_FEED_URL));
}

UpdateManager::UpdateManager(QObject *parent)
    : UpdateManager(defaultFeedUrl(), QVersionNumber::fromString(QStringLiteral(ODELEAF_VERSION)), parent)
{
}

UpdateManager::UpdateManager(QUrl feedUrl, QVersionNumber currentVersion, QObject *parent)
    : QObject(parent), m_feedUrl(std::move(feedUrl)), m_currentVersion(std::move(currentVersion)),
      m_network(new QNetworkAccessManager(this)), m_automatic(AppPreferences::automaticallyChecksForUpdates()),
      m_lastCheck(AppPreferences::lastUpdateCheckDate())
{
    m_canCheck = hasFeed();
    m_schedule.setInterval(scheduleIntervalMs);
    connect(&m_schedule, &QTimer::timeout, this, [this] { checkInBackgroundIfDue(); });
}

UpdateManager::~UpdateManager()
{
    if (m_reply)
        m_reply->abort();
}

void UpdateManager::setAutomaticallyChecksForUpdates(bool enabled)
{
    if (enabled == m_automatic)
        return;
    m_automatic = enabled;
    if (auto stored = AppPreferences::setAutomaticallyChecksForUpdates(enabled); !stored)
        Q_EMIT preferenceNotStored(stored.errorMessage());
    Q_EMIT automaticallyChecksForUpdatesChanged(enabled);
}

bool UpdateManager::hasFeed() const
{
    return m_feedUrl.isValid() && !m_feedUrl.isEmpty();
}

void UpdateManager::start()
{
    if (!hasFeed())
        return;
    m_schedule.start();
    checkInBackgroundIfDue();
}

void UpdateManager::checkForUpdates()
{
    beginCheck(true);
}

bool UpdateManager::checkInBackgroundIfDue(const QDateTime &now)
{
    if (!m_automatic || !m_canCheck)
        return false;
    if (m_lastCheck && m_lastCheck->secsTo(now) < automaticCheckInterval)
        return false;
    beginCheck(false);
    return true;
}

void UpdateManager::beginCheck(bool userInitiated)
{
    if (!m_canCheck)
        return;
    m_userInitiated = userInitiated;
    setCanCheck(false);
    QNetworkRequest request(m_feedUrl);
    request.setTransferTimeout(transferTimeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("OdeLeaf/%1 (Linux)").arg(m_currentVersion.toString()));
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    m_reply = m_network->get(request);
    // A feed far larger than any list of releases is not read to the end.
    connect(m_reply, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64) {
        if (received <= maximumFeedSize || !m_reply)
            return;
        m_reply->setProperty("tooLarge", true);
        m_reply->abort();
    });
    connect(m_reply, &QNetworkReply::finished, this, [this, reply = m_reply.data()] { finishCheck(reply); });
}

UpdateCheckOutcome UpdateManager::outcomeOf(QNetworkReply *reply) const
{
    UpdateCheckOutcome outcome;
    outcome.userInitiated = m_userInitiated;
    outcome.kind = UpdateCheckOutcome::Kind::failed;
    if (reply->property("tooLarge").toBool()) {
        outcome.errorText = tr("Der Update-Feed ist zu groß.");
        return outcome;
    }
    if (reply->error() != QNetworkReply::NoError) {
        outcome.errorText = reply->errorString();
        return outcome;
    }
    const auto newest = UpdateFeed::newestRelease(reply->read(maximumFeedSize + 1));
    if (!newest) {
        outcome.errorText = newest.errorMessage();
        return outcome;
    }
    outcome.release = *newest;
    // 1.3 and 1.3.0 are the same release.
    const bool newer = newest->version.normalized() > m_currentVersion.normalized();
    outcome.kind = newer ? UpdateCheckOutcome::Kind::updateAvailable : UpdateCheckOutcome::Kind::upToDate;
    return outcome;
}

void UpdateManager::finishCheck(QNetworkReply *reply)
{
    UpdateCheckOutcome outcome = outcomeOf(reply);
    reply->deleteLater();
    m_reply.clear();

    if (outcome.kind != UpdateCheckOutcome::Kind::failed) {
        m_lastCheck = QDateTime::currentDateTimeUtc();
        if (auto stored = AppPreferences::setLastUpdateCheckDate(*m_lastCheck); !stored)
            Q_EMIT preferenceNotStored(stored.errorMessage());
        Q_EMIT lastUpdateCheckDateChanged();
    }
    setCanCheck(true);
    Q_EMIT checkFinished(outcome);
}

void UpdateManager::setCanCheck(bool canCheck)
{
    if (canCheck == m_canCheck)
        return;
    m_canCheck = canCheck;
    Q_EMIT canCheckForUpdatesChanged(canCheck);
}
