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

namespace {

bool readStored(const QByteArray &bytes, PoemTextDocument &document)
{
    if (const auto rtfd = RtfdContainer::read(bytes)) {
        if (RtfReader::read(rtfd->rtf, document, rtfd->files))
            return true;
    }
    return RtfReader::read(bytes, document);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    PoemTextDocument document;
    if (readStored(bytes, document)) {
        // What was read must survive being written: same text, same number of pictures.
        const auto written = RtfWriter::write(document);
        if (written.ok()) {
            PoemTextDocument again;
            if (!readStored(*written, again) || again.toRawText() != document.toRawText())
                abort();
        }
    }
    return 0;
}
