#include "import/DocxPackage.h"

#include <QFile>

#include <zip.h>

namespace {

QString openFailureText(int code)
{
    switch (code) {
    case ZIP_ER_NOENT:
        return DocxPackage::tr("Die Datei wurde nicht gefunden.");
    case ZIP_ER_OPEN:
    case ZIP_ER_READ:
        return DocxPackage::tr("Die Datei konnte nicht gelesen werden.");
    case ZIP_ER_NOZIP:
        return DocxPackage::tr("Die Datei ist kein DOCX-Dokument.");
    case ZIP_ER_MEMORY:
        return DocxPackage::tr("Nicht genug Speicher zum Lesen der Datei.");
    default:
        return DocxPackage::tr("Das DOCX-Paket ist beschädigt.");
    }
}

} // namespace

void DocxPackage::Closer::operator()(zip *archive) const
{
    zip_discard(archive);
}

Result<DocxPackage> DocxPackage::open(const QString &path)
{
    if (QFile(path).size() == 0 && QFile::exists(path))
        return Error{tr("Die Datei ist leer.")};
    int code = 0;
    zip *archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code);
    if (!archive)
        return Error{openFailureText(code)};
    return DocxPackage(archive);
}

bool DocxPackage::contains(const QString &partName) const
{
    return zip_name_locate(m_archive.get(), partName.toUtf8().constData(), 0) >= 0;
}

Result<QByteArray> DocxPackage::read(const QString &partName, qint64 maximumSize) const
{
    const QByteArray name = partName.toUtf8();
    const zip_int64_t index = zip_name_locate(m_archive.get(), name.constData(), 0);
    if (index < 0)
        return Error{tr("Im DOCX-Paket fehlt der Teil %1.").arg(partName)};
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(m_archive.get(), zip_uint64_t(index), 0, &stat) == 0 && (stat.valid & ZIP_STAT_SIZE) &&
        stat.size > zip_uint64_t(maximumSize))
        return Error{
            tr("Der Teil %1 ist zu groß (über %2 MB entpackt).").arg(partName).arg(maximumSize / (1024 * 1024))};

    zip_file_t *file = zip_fopen_index(m_archive.get(), zip_uint64_t(index), 0);
    if (!file)
        return Error{tr("Der Teil %1 konnte nicht geöffnet werden.").arg(partName)};
    // The stated size may lie; the cap holds for what actually comes out.
    QByteArray bytes;
    char buffer[64 * 1024];
    bool failed = false;
    bool tooLarge = false;
    for (;;) {
        const zip_int64_t count = zip_fread(file, buffer, sizeof buffer);
        if (count < 0) {
            failed = true;
            break;
        }
        if (count == 0)
            break;
        if (bytes.size() + count > maximumSize) {
            tooLarge = true;
            break;
        }
        bytes.append(buffer, qsizetype(count));
    }
    zip_fclose(file);
    if (tooLarge)
        return Error{
            tr("Der Teil %1 ist zu groß (über %2 MB entpackt).").arg(partName).arg(maximumSize / (1024 * 1024))};
    if (failed)
        return Error{tr("Das DOCX-Paket ist beschädigt.")};
    return bytes;
}
