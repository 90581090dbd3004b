#include "ArchiveFixtures.h"

#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "archive/PoemStore.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextHighlighter.h"
#include "editor/PoemTextWriter.h"
#include "editor/RichTextEditing.h"
#include "editor/SpellChecker.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextImageFormat>

#include <benchmark/benchmark.h>

namespace {

// Something like a photograph: smooth shapes with sensor noise, which PNG cannot squeeze.
QImage photoLikeImage(int width, int height, quint32 seed)
{
    if (width <= 0 || height <= 0)
        return {}; // the baseline run: a poem without a picture
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, height);
    sky.setColorAt(0, QColor(70, 110, 170));
    sky.setColorAt(1, QColor(230, 190, 120));
    painter.fillRect(image.rect(), sky);
    painter.setBrush(QColor(40, 70, 40));
    painter.drawEllipse(QPointF(width * 0.3, height * 1.1), width * 0.7, height * 0.5);
    painter.end();
    QRandomGenerator random(seed);
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int noise = int(random.bounded(17)) - 8;
            const QRgb pixel = line[x];
            line[x] = qRgb(qBound(0, qRed(pixel) + noise, 255), qBound(0, qGreen(pixel) + noise, 255),
                           qBound(0, qBlue(pixel) + noise, 255));
        }
    }
    return image;
}

QString verses(int lines)
{
    ArchiveFixtures fixtures;
    QStringList result;
    for (int i = 0; i < lines; ++i)
        result.append(i % 5 == 4 ? QString() : fixtures.text(40).simplified());
    return result.join(QLatin1Char('\n'));
}

// Verses of distinct German words from the dictionary itself, one in twenty misspelt, so
// the checker really has to look words up.
QString dictionaryVerses(int lines)
{
    QFile file(QStringLiteral("/usr/share/hunspell/de_DE.dic"));
    if (!file.open(QIODevice::ReadOnly))
        return verses(lines);
    QStringList words;
    const QList<QByteArray> entries = file.readAll().split('\n');
    for (qsizetype i = 1; i < entries.size(); i += 37) {
        const QString word = QString::fromUtf8(entries.at(i).split('/').first()).trimmed();
        if (word.size() > 2 && word.at(0).isLetter())
            words.append(word);
    }
    QRandomGenerator random(11);
    QStringList result;
    for (int line = 0; line < lines; ++line) {
        QStringList verse;
        for (int i = 0; i < 6; ++i) {
            QString word = words.at(qsizetype(random.bounded(quint32(words.size()))));
            if (random.bounded(20) == 0)
                word.insert(word.size() / 2, QLatin1Char('x'));
            verse.append(word);
        }
        result.append(verse.join(QLatin1Char(' ')));
    }
    return result.join(QLatin1Char('\n'));
}

// A poem of 60 lines with one appended image, as the image import leaves it.
std::unique_ptr<PoemTextDocument> poemWithImage(const QString &imagePath)
{
    auto document = PoemRichText::fromPlainText(verses(60));
    if (!PoemRichText::appendImage(imagePath, *document))
        return nullptr;
    return document;
}

void BM_keystrokeSaveOf60LinePoemWithImage(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString imagePath = dir.filePath(QStringLiteral("photo.jpg"));
    photoLikeImage(int(state.range(0)), int(state.range(0) * 4 / 3), 7).save(imagePath, "JPEG", 90);
    auto document = state.range(0) > 0 ? poemWithImage(imagePath) : PoemRichText::fromPlainText(verses(60));
    auto opened = PersistenceController::open(dir.filePath(QStringLiteral("OdeLeaf.sqlite")));
    if (!document || !opened) {
        state.SkipWithError("could not prepare the poem");
        return;
    }
    ArchiveContext &context = opened.value()->viewContext();
    PoemPtr poem = PoemFactory::makeNewPoem(context, QDateTime::currentDateTimeUtc());
    QTextCursor cursor(document.get());
    cursor.setPosition(10);
    qint64 bytes = 0;
    for (auto _ : state) {
        cursor.insertText(QStringLiteral("a"));
        const auto encoded = PoemRichText::encode(*document);
        const auto saved = PoemTextWriter::write(context, *poem, *encoded, PoemRichText::plainText(*document),
                                                 QDateTime::currentDateTimeUtc());
        if (!saved)
            state.SkipWithError("save failed");
        bytes = encoded->size();
    }
    state.counters["richTextKB"] = double(bytes) / 1024;
}
BENCHMARK(BM_keystrokeSaveOf60LinePoemWithImage)
    ->Arg(0)
    ->Arg(500)
    ->Arg(1000)
    ->Arg(2400)
    ->Arg(3000) // 12 megapixels, as a phone takes them
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->ComputeStatistics("max", [](const std::vector<double> &v) { return *std::max_element(v.begin(), v.end()); });

void BM_encodeOnlyOf60LinePoemWithImage(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString imagePath = dir.filePath(QStringLiteral("photo.jpg"));
    photoLikeImage(2400, 3200, 7).save(imagePath, "JPEG", 90);
    auto document = poemWithImage(imagePath);
    for (auto _ : state)
        benchmark::DoNotOptimize(PoemRichText::encode(*document));
}
BENCHMARK(BM_encodeOnlyOf60LinePoemWithImage)->Unit(benchmark::kMillisecond);

// A poem of 30 lines with three pictures of 1000 × 1000 pixels, as this program stores it.
QByteArray poemWithThreeMegapixelImages()
{
    auto document = PoemRichText::fromPlainText(verses(30));
    QTextCursor cursor(document.get());
    // Pictures from elsewhere (another program's RTF) keep their full size.
    for (quint32 i = 0; i < 3; ++i) {
        cursor.movePosition(QTextCursor::End);
        cursor.insertBlock();
        QTextImageFormat image;
        image.setName(document->addPicture(photoLikeImage(1000, 1000, i + 1)));
        image.setWidth(500);
        image.setHeight(500);
        cursor.insertImage(image);
    }
    return *PoemRichText::encode(*document);
}

// The same poem as word processors write it: pictures as hex digits.
QByteArray asHexPictures(const QByteArray &rtf)
{
    QByteArray out;
    qsizetype at = 0;
    qsizetype bin;
    while ((bin = rtf.indexOf("\\bin", at)) >= 0) {
        const qsizetype space = rtf.indexOf(' ', bin);
        const qsizetype length = rtf.mid(bin + 4, space - bin - 4).toLongLong();
        out += rtf.mid(at, bin - at) + ' ' + rtf.mid(space + 1, length).toHex();
        at = space + 1 + length;
    }
    return out + rtf.mid(at);
}

void decodeBenchmark(benchmark::State &state, const QByteArray &stored, bool showPictures)
{
    for (auto _ : state) {
        const auto document = PoemRichText::decode(stored);
        if (!showPictures)
            continue;
        // What opening the poem on screen adds: every picture decoded to pixels.
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextCharFormat format = it.fragment().charFormat();
                if (format.isImageFormat())
                    benchmark::DoNotOptimize(
                        document->resource(QTextDocument::ImageResource, QUrl(format.toImageFormat().name())));
            }
        }
    }
    state.counters["richTextKB"] = double(stored.size()) / 1024;
}

void BM_decodePoemWithThreeMegapixelImages(benchmark::State &state)
{
    decodeBenchmark(state, poemWithThreeMegapixelImages(), false);
}
BENCHMARK(BM_decodePoemWithThreeMegapixelImages)->Unit(benchmark::kMillisecond);

void BM_decodeHexPicturesOfThreeMegapixelImages(benchmark::State &state)
{
    decodeBenchmark(state, asHexPictures(poemWithThreeMegapixelImages()), false);
}
BENCHMARK(BM_decodeHexPicturesOfThreeMegapixelImages)->Unit(benchmark::kMillisecond);

void BM_decodeAndShowThreeMegapixelImages(benchmark::State &state)
{
    decodeBenchmark(state, poemWithThreeMegapixelImages(), true);
}
BENCHMARK(BM_decodeAndShowThreeMegapixelImages)->Unit(benchmark::kMillisecond);

// Highlighting a whole poem, as after opening it: every word is looked up once (cold) or
// comes from the checker's memory (warm, as while typing).
void spellHighlight(benchmark::State &state, bool warm)
{
    SpellChecker checker(QStringLiteral("de"));
    if (!checker.isAvailable()) {
        state.SkipWithError("German dictionary missing");
        return;
    }
    auto document = PoemRichText::fromPlainText(dictionaryVerses(200));
    PoemTextHighlighter highlighter(document.get(), &checker);
    for (auto _ : state) {
        if (!warm) {
            state.PauseTiming();
            checker.~SpellChecker();
            new (&checker) SpellChecker(QStringLiteral("de"));
            state.ResumeTiming();
        }
        highlighter.rehighlight();
    }
}

// Opening a poem that holds a phone photo: reading the stored form and drawing the picture
// at screen size.
void BM_openPoemWithTwelveMegapixelJpeg(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString imagePath = dir.filePath(QStringLiteral("photo.jpg"));
    photoLikeImage(3000, 4000, 7).save(imagePath, "JPEG", 90);
    const auto document = poemWithImage(imagePath);
    if (!document) {
        state.SkipWithError("could not prepare the poem");
        return;
    }
    decodeBenchmark(state, *PoemRichText::encode(*document), state.range(0) != 0);
}
BENCHMARK(BM_openPoemWithTwelveMegapixelJpeg)
    ->Arg(0)
    ->Arg(1)
    ->ArgName("shown")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// The step before: the poem's row read back from the file, its picture joined in again.
void BM_readStoredPoemWithTwelveMegapixelJpeg(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString imagePath = dir.filePath(QStringLiteral("photo.jpg"));
    photoLikeImage(3000, 4000, 7).save(imagePath, "JPEG", 90);
    const auto document = poemWithImage(imagePath);
    const QString storePath = dir.filePath(QStringLiteral("OdeLeaf.sqlite"));
    auto store = PoemStore::open(storePath);
    if (!document || !store) {
        state.SkipWithError("could not prepare the poem");
        return;
    }
    PoemValues values;
    values.richTextData = *PoemRichText::encode(*document);
    auto write = (*store)->beginWrite();
    if (!write || !(*write)->insert(values) || !(*write)->commit()) {
        state.SkipWithError("could not store the poem");
        return;
    }
    write.value().reset();
    for (auto _ : state) {
        const auto rows = (*store)->loadAll();
        if (!rows || rows->front().values.richTextData != values.richTextData)
            state.SkipWithError("the poem came back different");
    }
}
BENCHMARK(BM_readStoredPoemWithTwelveMegapixelJpeg)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void BM_spellHighlight200LinesCold(benchmark::State &state)
{
    spellHighlight(state, false);
}
BENCHMARK(BM_spellHighlight200LinesCold)->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_spellHighlight200LinesWarm(benchmark::State &state)
{
    spellHighlight(state, true);
}
BENCHMARK(BM_spellHighlight200LinesWarm)->Unit(benchmark::kMillisecond);

} // namespace
