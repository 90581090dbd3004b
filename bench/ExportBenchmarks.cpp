#include "editor/PoemTextDocument.h"
#include "export/CRC32.h"
#include "export/DOCXExporter.h"
#include "export/PDFExporter.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <QTextCursor>
#include <QTextImageFormat>

#include <zlib.h>

#include <cstring>
#include <random>

namespace {

// A photograph-like picture: gradients and noise, so PNG cannot shrink it to nothing.
QImage photo(int seed)
{
    QImage image(2400, 1600, QImage::Format_RGB32);
    std::mt19937 random(seed);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int noise = int(random() % 24);
            line[x] = qRgb((x / 10 + noise) % 256, (y / 7 + noise + seed * 40) % 256, ((x + y) / 16 + noise) % 256);
        }
    }
    return image;
}

ExportDocument sixtyLinesThreePhotos()
{
    auto rich = std::make_shared<PoemTextDocument>();
    QTextCursor cursor(rich.get());
    QTextCharFormat body;
    body.setFontFamilies({QStringLiteral("Roboto")});
    body.setFontPointSize(17);
    for (int line = 1; line <= 60; ++line) {
        if (line > 1)
            cursor.insertBlock();
        QTextCharFormat format = body;
        format.setFontItalic(line % 7 == 0);
        cursor.insertText(QStringLiteral("Zeile %1: der Wind geht über die Felder und nimmt die Worte mit").arg(line),
                          format);
        if (line % 20 == 0) {
            cursor.insertBlock();
            QTextImageFormat image;
            image.setName(rich->addPicture(photo(line)));
            image.setWidth(520);
            image.setHeight(520 * 2.0 / 3);
            cursor.insertImage(image);
        }
    }
    ExportDocument document;
    document.title = QStringLiteral("Herbstwind");
    document.metaLines = {QStringLiteral("Datum: 01.10.2024"), QStringLiteral("Kategorie: Lyrik")};
    document.richText = rich;
    return document;
}

QByteArray randomBuffer(qsizetype size)
{
    QByteArray buffer(size, Qt::Uninitialized);
    std::mt19937_64 random(7);
    for (qsizetype i = 0; i + 8 <= size; i += 8) {
        const quint64 value = random();
        std::memcpy(buffer.data() + i, &value, 8);
    }
    return buffer;
}

void BM_DocxExport(benchmark::State &state)
{
    const ExportDocument document = sixtyLinesThreePhotos();
    const DOCXExporter::Options options = DOCXExporter::Options::current();
    // The pictures are converted to PNG once per document and kept; measure the steady state.
    benchmark::DoNotOptimize(DOCXExporter::data(document, options));
    for (auto _ : state) {
        auto bytes = DOCXExporter::data(document, options);
        benchmark::DoNotOptimize(bytes);
        state.counters["MB"] = double(bytes->size()) / 1e6;
    }
}
BENCHMARK(BM_DocxExport)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_PdfExport(benchmark::State &state)
{
    const ExportDocument document = sixtyLinesThreePhotos();
    for (auto _ : state) {
        auto bytes = PDFExporter::data(document);
        benchmark::DoNotOptimize(bytes);
        state.counters["MB"] = double(bytes->size()) / 1e6;
    }
}
BENCHMARK(BM_PdfExport)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

constexpr qsizetype crcBufferSize = 64 * 1024 * 1024;

void BM_Crc32Own(benchmark::State &state)
{
    const QByteArray buffer = randomBuffer(crcBufferSize);
    for (auto _ : state)
        benchmark::DoNotOptimize(CRC32::checksum(buffer));
    state.SetBytesProcessed(state.iterations() * buffer.size());
}
BENCHMARK(BM_Crc32Own)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_Crc32Zlib(benchmark::State &state)
{
    const QByteArray buffer = randomBuffer(crcBufferSize);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            crc32_z(crc32(0, nullptr, 0), reinterpret_cast<const Bytef *>(buffer.constData()), size_t(buffer.size())));
    }
    state.SetBytesProcessed(state.iterations() * buffer.size());
}
BENCHMARK(BM_Crc32Zlib)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

} // namespace
