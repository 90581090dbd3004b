#include "editor/RtfdContainer.h"

#include <QList>

#include <algorithm>

namespace {

constexpr quint32 maxEntries = 10000;
constexpr qsizetype maxReferencedNames = 256;
const QString textEntryName = QStringLiteral("TXT.rtf");

std::optional<quint32> readUInt32(const QByteArray &bytes, qsizetype offset)
{
    if (offset < 0 || offset + 4 > bytes.size())
        return std::nullopt;
    const auto *p = reinterpret_cast<const uchar *>(bytes.constData() + offset);
    return quint32(p[0]) | (quint32(p[1]) << 8) | (quint32(p[2]) << 16) | (quint32(p[3]) << 24);
}

// Length-prefixed items from offset; nothing when one does not fit.
std::optional<QList<QByteArray>> readItems(const QByteArray &bytes, qsizetype &offset, quint32 count)
{
    QList<QByteArray> items;
    for (quint32 i = 0; i < count; ++i) {
        const auto length = readUInt32(bytes, offset);
        if (!length || *length > quint64(bytes.size() - offset - 4))
            return std::nullopt;
        items.append(bytes.mid(offset + 4, *length));
        offset += 4 + qsizetype(*length);
    }
    return items;
}

std::optional<RtfdContents> contentsFrom(const QList<QByteArray> &names, const QList<QByteArray> &files)
{
    RtfdContents contents;
    for (qsizetype i = 0; i < names.size() && i < files.size(); ++i) {
        const QString name = QString::fromUtf8(names.at(i));
        if (name == textEntryName)
            contents.rtf = files.at(i);
        else
            contents.files.insert(name, files.at(i));
    }
    if (!contents.rtf.startsWith("{\\rtf"))
        return std::nullopt;
    return contents;
}

// "rtfd", a version word, the number of entries, the names, then the files; some streams
// carry one extra word per entry between names and files.
std::optional<RtfdContents> readStructured(const QByteArray &bytes)
{
    const auto count = readUInt32(bytes, 8);
    if (!count || *count == 0 || *count > maxEntries)
        return std::nullopt;
    qsizetype offset = 12;
    const auto names = readItems(bytes, offset, *count);
    if (!names)
        return std::nullopt;
    for (const qsizetype extra : {qsizetype(0), qsizetype(4) * *count}) {
        qsizetype fileOffset = offset + extra;
        if (const auto files = readItems(bytes, fileOffset, *count)) {
            if (auto contents = contentsFrom(*names, *files))
                return contents;
        }
    }
    return std::nullopt;
}

bool isImageStart(const QByteArray &bytes, qsizetype offset)
{
    const uchar first = uchar(bytes.at(offset));
    if (first != 0x89 && first != 0xFF && first != 'G' && first != 'I' && first != 'M')
        return false;
    const QByteArray head = bytes.mid(offset, 8);
    return head.startsWith("\x89PNG") || head.startsWith("\xFF\xD8\xFF") || head.startsWith("GIF8") ||
           head.startsWith("II*\0") || head.startsWith(QByteArray("MM\0*", 4));
}

QList<QByteArray> attachmentNames(const QByteArray &rtf)
{
    QList<QByteArray> names;
    const QByteArray marker = "\\NeXTGraphic ";
    qsizetype at = 0;
    while ((at = rtf.indexOf(marker, at)) >= 0 && names.size() < maxReferencedNames) {
        at += marker.size();
        qsizetype end = at;
        while (end < rtf.size() && rtf.at(end) != '\\' && rtf.at(end) != '}' && end - at < 1024)
            ++end;
        names.append(rtf.mid(at, end - at).trimmed());
        at = end;
    }
    return names;
}

std::optional<RtfdContents> readBySignatures(const QByteArray &bytes)
{
    const qsizetype start = bytes.indexOf("{\\rtf");
    if (start < 0)
        return std::nullopt;
    RtfdContents contents;
    const auto declared = readUInt32(bytes, start - 4);
    if (declared && start >= 8 && *declared <= quint64(bytes.size() - start))
        contents.rtf = bytes.mid(start, *declared);
    else
        contents.rtf = bytes.mid(start);

    // Names in the order the container lists them.
    QList<QPair<qsizetype, QByteArray>> placed;
    for (const QByteArray &name : attachmentNames(contents.rtf)) {
        if (!name.isEmpty())
            placed.append({bytes.indexOf(name), name});
    }
    std::stable_sort(placed.begin(), placed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<QByteArray> names;
    for (const auto &entry : std::as_const(placed))
        names.append(entry.second);
    QList<QByteArray> images;
    for (qsizetype offset = 0; offset + 8 <= bytes.size() && images.size() < names.size(); ++offset) {
        if (!isImageStart(bytes, offset + 4))
            continue;
        const auto length = readUInt32(bytes, offset);
        if (!length || *length > quint64(bytes.size() - offset - 4))
            continue;
        images.append(bytes.mid(offset + 4, *length));
        offset += 4 + qsizetype(*length) - 1;
    }
    for (qsizetype i = 0; i < names.size() && i < images.size(); ++i)
        contents.files.insert(QString::fromUtf8(names.at(i)), images.at(i));
    return contents;
}

} // namespace

bool RtfdContainer::looksLikeRtfd(const QByteArray &bytes)
{
    return bytes.startsWith("rtfd");
}

std::optional<RtfdContents> RtfdContainer::read(const QByteArray &bytes)
{
    if (!looksLikeRtfd(bytes))
        return std::nullopt;
    if (auto contents = readStructured(bytes))
        return contents;
    return readBySignatures(bytes);
}

QByteArray RtfdContainer::write(const QByteArray &rtf, const QList<QPair<QString, QByteArray>> &attachments)
{
    QList<QPair<QByteArray, QByteArray>> entries{{textEntryName.toUtf8(), rtf}};
    for (const auto &attachment : attachments)
        entries.append({attachment.first.toUtf8(), attachment.second});
    QByteArray out("rtfd");
    const auto append32 = [&out](quint64 value) {
        for (int i = 0; i < 4; ++i)
            out.append(char((value >> (8 * i)) & 0xFF));
    };
    append32(0);
    append32(quint64(entries.size()));
    for (const auto &entry : std::as_const(entries)) {
        append32(quint64(entry.first.size()));
        out.append(entry.first);
    }
    for (const auto &entry : std::as_const(entries)) {
        append32(quint64(entry.second.size()));
        out.append(entry.second);
    }
    return out;
}
