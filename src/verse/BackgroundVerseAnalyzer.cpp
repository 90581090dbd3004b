#include "verse/BackgroundVerseAnalyzer.h"

#include "verse/VerseAnalyzer.h"

BackgroundVerseAnalyzer::BackgroundVerseAnalyzer(QObject *parent)
    : QObject(parent), m_worker(new QObject), m_analyzer(std::make_shared<VerseAnalyzer>()),
      m_newest(std::make_shared<std::atomic<quint64>>(0))
{
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("verse analysis"));
    m_thread.start(QThread::LowPriority);
}

BackgroundVerseAnalyzer::~BackgroundVerseAnalyzer()
{
    // A request still queued finds itself outdated and returns at once.
    m_newest->fetch_add(1);
    m_thread.quit();
    m_thread.wait();
}

void BackgroundVerseAnalyzer::request(const QString &text, const QString &language)
{
    const quint64 generation = m_newest->fetch_add(1) + 1;
    QMetaObject::invokeMethod(
        m_worker,
        [this, generation, text, language, analyzer = m_analyzer, newest = m_newest] {
            if (newest->load() != generation)
                return;
            VerseAnalysis analysis = analyzer->analyse(text, language);
            // Delivered through this object's own thread; dropped if it is gone by then.
            QMetaObject::invokeMethod(
                this,
                [this, generation, newest, analysis = std::move(analysis)] {
                    if (newest->load() == generation)
                        Q_EMIT analysed(analysis);
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}
