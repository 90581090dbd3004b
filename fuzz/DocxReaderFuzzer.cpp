// Feeds arbitrary bytes to the DOCX reader, in this process. The first byte picks the layer:
// even runs the whole reader over the bytes as a ZIP package, odd splits the rest at the
// first NUL into document and style XML, which mutations of a ZIP would rarely reach.
// Neither may crash, hang or touch memory it does not own, and a failure must say why.
#include "import/DocxTextReader.h"

#include <QTemporaryFile>

#include <cstdint>
#include <cstdlib>

namespace {

// libzip reads from a path; one file in memory-backed /dev/shm, rewritten per input, keeps
// the run free of disk writes.
QTemporaryFile &packageFile()
{
    static QTemporaryFile file(QStringLiteral("/dev/shm/odeleaf-fuzz-docx-XXXXXX.docx"));
    if (!file.isOpen() && !file.open())
        std::abort();
    return file;
}

Result<AttributedText> readPackage(const QByteArray &bytes)
{
    QTemporaryFile &file = packageFile();
    if (!file.resize(0) || !file.seek(0) || file.write(bytes) != bytes.size() || !file.flush())
        std::abort();
    return DocxTextReader::read(file.fileName());
}

Result<AttributedText> readXml(const QByteArray &bytes)
{
    const qsizetype split = bytes.indexOf('\0');
    if (split < 0)
        return DocxTextReader::parse(bytes, QByteArray());
    return DocxTextReader::parse(bytes.left(split), bytes.mid(split + 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, qsizetype(size - 1));
    const auto text = (data[0] & 1) ? readXml(bytes) : readPackage(bytes);
    if (!text.ok() && text.error().message.isEmpty())
        std::abort();
    return 0;
}
