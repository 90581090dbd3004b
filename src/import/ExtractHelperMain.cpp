// odeleaf-extract: reads documents named on standard input, one request frame each, and
// answers each with a reply frame on standard output (IsolatedDocumentExtractor's
// protocol). It runs apart from the window so that a hostile file can only take this
// process down; it ends when its input ends.
#include "import/DocumentTextExtractor.h"
#include "import/IsolatedDocumentExtractor.h"

#include <QtEndian>

#include <sys/resource.h>

#include <cstdio>
#include <optional>

namespace {

constexpr quint32 maximumRequestSize = 64 * 1024;

void limitResources()
{
    // A decompression bomb runs into this limit instead of the machine's memory.
    const rlimit memory{rlim_t(2) << 30, rlim_t(2) << 30};
    setrlimit(RLIMIT_AS, &memory);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
}

bool readExactly(char *target, size_t size)
{
    return std::fread(target, 1, size, stdin) == size;
}

std::optional<QString> nextRequest()
{
    char header[4];
    if (!readExactly(header, sizeof header))
        return std::nullopt;
    const quint32 length = qFromBigEndian<quint32>(header);
    if (length > maximumRequestSize)
        return std::nullopt;
    QByteArray path(qsizetype(length), Qt::Uninitialized);
    if (!readExactly(path.data(), length))
        return std::nullopt;
    return QString::fromUtf8(path);
}

bool writeReply(const QByteArray &reply)
{
    const QByteArray framed = IsolatedDocumentExtractor::frame(reply);
    return std::fwrite(framed.constData(), 1, size_t(framed.size()), stdout) == size_t(framed.size()) &&
           std::fflush(stdout) == 0;
}

} // namespace

int main()
{
    limitResources();
    while (const auto path = nextRequest()) {
        if (!writeReply(IsolatedDocumentExtractor::encodeReply(DocumentTextExtractor::extract(*path))))
            return 1;
    }
    return 0;
}
