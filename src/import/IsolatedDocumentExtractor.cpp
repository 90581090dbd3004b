#include "import/IsolatedDocumentExtractor.h"

#include "app/ProgramFiles.h"
#include "import/ExtractError.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QIODevice>
#include <QProcess>
#include <QTimer>
#include <QtEndian>

#include <signal.h>

namespace {

constexpr quint32 replyMagic = 0x4F4C4558; // "OLEX"
constexpr quint16 replyVersion = 1;
constexpr qsizetype frameHeaderSize = 4;
// Far above any poem; a reply claiming more is garbage.
constexpr quint32 maximumReplySize = 512u * 1024 * 1024;

IsolatedExtraction failure(const QString &message, bool timedOut = false)
{
    return {Error(ExtractError::failed(message)), timedOut};
}

IsolatedExtraction timeoutFailure(int timeoutMilliseconds)
{
    return failure(
        IsolatedDocumentExtractor::tr("Zeitüberschreitung nach %1 s").arg((timeoutMilliseconds + 999) / 1000), true);
}

IsolatedExtraction abortedFailure()
{
    return failure(IsolatedDocumentExtractor::tr("Das Lesen des Dokuments wurde unerwartet abgebrochen."));
}

QString missingHelperText(const QString &program)
{
    return IsolatedDocumentExtractor::tr("Das Hilfsprogramm zum Lesen fehlt: %1").arg(program);
}

void configure(QProcess &process, const QString &program, const QStringList &arguments)
{
    process.setProgram(program);
    process.setArguments(arguments);
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.setStandardErrorFile(QProcess::nullDevice());
}

// The payload of the first complete frame in buffer, if there is one.
std::optional<QByteArray> takeFrame(QByteArray &buffer, bool &oversized)
{
    if (buffer.size() < frameHeaderSize)
        return std::nullopt;
    const quint32 length = qFromBigEndian<quint32>(buffer.constData());
    oversized = length > maximumReplySize;
    if (oversized || buffer.size() < frameHeaderSize + qsizetype(length))
        return std::nullopt;
    QByteArray payload = buffer.mid(frameHeaderSize, length);
    buffer.remove(0, frameHeaderSize + length);
    return payload;
}

} // namespace

IsolatedDocumentExtractor::IsolatedDocumentExtractor() : IsolatedDocumentExtractor(helperPath(), {})
{
}

IsolatedDocumentExtractor::IsolatedDocumentExtractor(QString program, QStringList arguments)
    : m_program(std::move(program)), m_arguments(std::move(arguments))
{
}

IsolatedDocumentExtractor::~IsolatedDocumentExtractor()
{
    stop();
}

QString IsolatedDocumentExtractor::helperPath()
{
    return ProgramFiles::helperExecutable();
}

int IsolatedDocumentExtractor::defaultTimeoutMilliseconds(const QString &path)
{
    const bool pdf = QFileInfo(path).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
    return 1000 * (pdf ? defaultPDFTimeoutSeconds : defaultDOCXTimeoutSeconds);
}

bool IsolatedDocumentExtractor::ensureRunning(int timeoutMilliseconds, QString &failureText)
{
    if (m_process && m_process->state() == QProcess::Running)
        return true;
    stop();
    if (!QFileInfo(m_program).isExecutable()) {
        failureText = missingHelperText(m_program);
        return false;
    }
    m_process = std::make_unique<QProcess>();
    configure(*m_process, m_program, m_arguments);
    m_process->start();
    if (!m_process->waitForStarted(timeoutMilliseconds)) {
        failureText = tr("Das Hilfsprogramm zum Lesen startet nicht: %1").arg(m_process->errorString());
        stop();
        return false;
    }
    const std::lock_guard lock(m_pidMutex);
    m_pid = m_process->processId();
    return true;
}

void IsolatedDocumentExtractor::abort()
{
    const std::lock_guard lock(m_pidMutex);
    if (m_pid > 0)
        ::kill(pid_t(m_pid), SIGKILL);
}

void IsolatedDocumentExtractor::stop()
{
    if (!m_process)
        return;
    {
        const std::lock_guard lock(m_pidMutex);
        m_pid = 0;
    }
    if (m_process->state() != QProcess::NotRunning) {
        m_process->closeWriteChannel(); // a healthy helper ends when its input ends
        if (!m_process->waitForFinished(200)) {
            m_process->kill();
            m_process->waitForFinished(-1);
        }
    }
    m_process.reset();
}

IsolatedExtraction IsolatedDocumentExtractor::extract(const QString &path, int timeoutMilliseconds)
{
    QDeadlineTimer deadline(timeoutMilliseconds);
    QString failureText;
    if (!ensureRunning(timeoutMilliseconds, failureText))
        return failure(failureText);
    m_process->write(frame(encodeRequest(QFileInfo(path).absoluteFilePath())));

    QByteArray buffer;
    for (;;) {
        bool oversized = false;
        if (auto payload = takeFrame(buffer, oversized))
            return {decodeReply(*payload), false};
        if (oversized) {
            stop();
            return abortedFailure();
        }
        if (m_process->state() != QProcess::Running) {
            buffer.append(m_process->readAllStandardOutput());
            if (auto payload = takeFrame(buffer, oversized))
                return {decodeReply(*payload), false};
            stop();
            return abortedFailure();
        }
        if (deadline.hasExpired()) {
            stop();
            return timeoutFailure(timeoutMilliseconds);
        }
        if (m_process->waitForReadyRead(int(std::max<qint64>(deadline.remainingTime(), 1))))
            buffer.append(m_process->readAllStandardOutput());
    }
}

void IsolatedDocumentExtractor::extractAsync(const QString &path, int timeoutMilliseconds, QObject *context,
                                             std::function<void(IsolatedExtraction)> done)
{
    const QString program = helperPath();
    if (!QFileInfo(program).isExecutable()) {
        QTimer::singleShot(0, context, [done, program] { done(failure(missingHelperText(program))); });
        return;
    }
    auto *process = new QProcess(context);
    auto *timer = new QTimer(process);
    timer->setSingleShot(true);
    auto answered = std::make_shared<bool>(false);
    const auto finish = [process, answered, done](IsolatedExtraction outcome) {
        if (*answered)
            return;
        *answered = true;
        process->disconnect();
        if (process->state() != QProcess::NotRunning)
            process->kill();
        process->deleteLater();
        done(std::move(outcome));
    };
    QObject::connect(timer, &QTimer::timeout, process,
                     [finish, timeoutMilliseconds] { finish(timeoutFailure(timeoutMilliseconds)); });
    QObject::connect(process, &QProcess::finished, process, [process, finish] {
        QByteArray buffer = process->readAllStandardOutput();
        bool oversized = false;
        const auto payload = takeFrame(buffer, oversized);
        finish(payload && process->exitStatus() == QProcess::NormalExit
                   ? IsolatedExtraction{decodeReply(*payload), false}
                   : abortedFailure());
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [process, finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(failure(tr("Das Hilfsprogramm zum Lesen startet nicht: %1").arg(process->errorString())));
    });
    configure(*process, program, {});
    timer->start(timeoutMilliseconds);
    process->start();
    process->write(frame(encodeRequest(QFileInfo(path).absoluteFilePath())));
    process->closeWriteChannel();
}

QByteArray IsolatedDocumentExtractor::frame(const QByteArray &payload)
{
    QByteArray bytes(frameHeaderSize, Qt::Uninitialized);
    qToBigEndian<quint32>(quint32(payload.size()), bytes.data());
    return bytes + payload;
}

QByteArray IsolatedDocumentExtractor::encodeRequest(const QString &path)
{
    return path.toUtf8();
}

QByteArray IsolatedDocumentExtractor::encodeReply(const Result<ExtractedDocument> &result)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << replyMagic << replyVersion << result.ok();
    if (!result.ok()) {
        stream << result.error().message;
        return bytes;
    }
    stream << result->text << result->richText.has_value();
    if (result->richText)
        stream << result->richText->serialized();
    return bytes;
}

Result<ExtractedDocument> IsolatedDocumentExtractor::decodeReply(const QByteArray &payload)
{
    const Error garbled = ExtractError::failed(tr("Die Antwort des Hilfsprogramms ist unlesbar."));
    QDataStream stream(payload);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 magic = 0;
    quint16 version = 0;
    bool ok = false;
    stream >> magic >> version >> ok;
    if (stream.status() != QDataStream::Ok || magic != replyMagic || version != replyVersion)
        return garbled;
    if (!ok) {
        QString message;
        stream >> message;
        return stream.status() == QDataStream::Ok ? Error{message} : garbled;
    }
    ExtractedDocument document;
    bool hasRichText = false;
    stream >> document.text >> hasRichText;
    if (hasRichText) {
        QByteArray rich;
        stream >> rich;
        document.richText = AttributedText::deserialized(rich);
        if (!document.richText)
            return garbled;
    }
    if (stream.status() != QDataStream::Ok)
        return garbled;
    return document;
}
