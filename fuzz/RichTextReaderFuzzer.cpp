// Feeds arbitrary bytes to the reader of richTextData (RTFD container, then RTF), then
// writes what it read back out: neither may crash, hang or touch memory it does not own.
#include "editor/PoemTextDocument.h"
#include "editor/RtfReader.h"
#include "editor/RtfWriter.h"
#include "editor/RtfdContainer.h"

#include <QGuiApplication>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    // Lives for the whole run; text layout and images need it.
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    PoemTextDocument document;
    bool read = false;
    if (const auto rtfd = RtfdContainer::read(bytes))
        read = RtfReader::read(rtfd->rtf, document, rtfd->files);
    if (!read)
        read = RtfReader::read(bytes, document);
    if (read) {
        const auto written = RtfWriter::write(document);
        if (written.ok()) {
            PoemTextDocument again;
            RtfReader::read(*written, again);
        }
    }
    return 0;
}
