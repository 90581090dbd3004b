#include "backup/BackupReader.h"

#include "archive/BoundedFileReader.h"
#include "backup/ArchiveJson.h"
#include "backup/JsonCursor.h"

#include <QCoreApplication>

#include <array>
#include <cmath>

namespace {

// Far beyond any archive of texts, yet small enough to hold in memory.
constexpr qint64 maximumFileSize = qint64(2) << 30;

// Strict standard base64: the alphabet only, padded to whole quartets, "=" only at the
// very end. Checks and decodes in one pass.
std::optional<QByteArray> decodeBase64(QByteArrayView text)
{
    static const auto values = [] {
        std::array<qint8, 256> table{};
        table.fill(-1);
        const char *alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (int i = 0; i < 64; ++i)
            table[static_cast<unsigned char>(alphabet[i])] = qint8(i);
        return table;
    }();
    if (text.size() % 4 != 0)
        return std::nullopt;
    QByteArray bytes(text.size() / 4 * 3, Qt::Uninitialized);
    char *out = bytes.data();
    const auto *in = reinterpret_cast<const unsigned char *>(text.data());
    for (qsizetype i = 0; i < text.size(); i += 4) {
        const int a = values[in[i]];
        const int b = values[in[i + 1]];
        const int c = values[in[i + 2]];
        const int d = values[in[i + 3]];
        if ((a | b | c | d) >= 0) {
            *out++ = char((a << 2) | (b >> 4));
            *out++ = char((b << 4) | (c >> 2));
            *out++ = char((c << 6) | d);
            continue;
        }
        const bool last = i + 4 == text.size();
        if (!last || a < 0 || b < 0 || in[i + 3] != '=')
            return std::nullopt;
        *out++ = char((a << 2) | (b >> 4));
        if (c >= 0)
            *out++ = char((b << 4) | (c >> 2));
        else if (in[i + 2] != '=')
            return std::nullopt;
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

std::optional<QUuid> parseUuid(const QString &text)
{
    if (text.size() != 36)
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        const bool hex = (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
        if (hyphen ? c != u'-' : !hex)
            return std::nullopt;
    }
    return QUuid::fromString(text);
}

// One decoding pass; the first fault ends it and is the message.
class Decoding {
public:
    explicit Decoding(QByteArrayView bytes) : m_cursor(bytes) {}

    Result<Backup> run()
    {
        Backup backup;
        if (!readDocument(backup))
            return Error{m_error.isEmpty() ? syntaxError() : m_error};
        return backup;
    }

private:
    QString syntaxError() const
    {
        return BackupReader::tr("Die Datei ist kein gültiges JSON: %1.").arg(m_cursor.errorText());
    }

    bool fault(const QString &message)
    {
        if (m_error.isEmpty() && !m_cursor.failed())
            m_error = m_poemNumber > 0 ? BackupReader::tr("Gedicht %1: %2").arg(m_poemNumber).arg(message) : message;
        return false;
    }

    bool wrongType(QByteArrayView key, const QString &expected)
    {
        if (m_cursor.failed())
            return false;
        return fault(BackupReader::tr("Feld „%1“ hat einen ungültigen Typ (erwartet: %2).")
                         .arg(QString::fromUtf8(key), expected));
    }

    bool missing(const char *key) { return fault(BackupReader::tr("Pflichtfeld „%1“ fehlt.").arg(QLatin1String(key))); }

    bool isNull()
    {
        if (m_cursor.peek() != JsonCursor::Kind::null)
            return false;
        return m_cursor.readNull();
    }

    bool readText(QByteArrayView key, QString &value)
    {
        if (m_cursor.peek() != JsonCursor::Kind::string)
            return wrongType(key, BackupReader::tr("Text"));
        return m_cursor.readString(value);
    }

    bool readOptionalText(QByteArrayView key, std::optional<QString> &value)
    {
        value.reset();
        if (isNull())
            return true;
        QString text;
        if (!readText(key, text))
            return false;
        value = std::move(text);
        return true;
    }

    bool readFlag(QByteArrayView key, bool &value)
    {
        if (m_cursor.peek() != JsonCursor::Kind::boolean)
            return wrongType(key, BackupReader::tr("Wahrheitswert"));
        return m_cursor.readBool(value);
    }

    bool readInteger(QByteArrayView key, qint64 &value)
    {
        double number = 0;
        if (m_cursor.peek() != JsonCursor::Kind::number)
            return wrongType(key, BackupReader::tr("ganze Zahl"));
        if (!m_cursor.readNumber(number))
            return false;
        if (number != std::trunc(number) || std::fabs(number) > 9007199254740992.0)
            return wrongType(key, BackupReader::tr("ganze Zahl"));
        value = qint64(number);
        return true;
    }

    bool readDate(QByteArrayView key, QDateTime &value)
    {
        QString text;
        if (!readText(key, text))
            return false;
        const auto date = ArchiveJson::parseDate(text);
        if (!date)
            return fault(BackupReader::tr("Feld „%1“ enthält kein gültiges Datum: „%2“ (erwartet wird die Form "
                                          "2026-11-14T21:03:47Z).")
                             .arg(QString::fromUtf8(key), text));
        value = *date;
        return true;
    }

    bool readOptionalDate(QByteArrayView key, std::optional<QDateTime> &value)
    {
        value.reset();
        if (isNull())
            return true;
        QDateTime date;
        if (!readDate(key, date))
            return false;
        value = date;
        return true;
    }

    bool readId(QByteArrayView key, std::optional<QUuid> &value)
    {
        std::optional<QString> text;
        if (!readOptionalText(key, text))
            return false;
        value.reset();
        if (!text)
            return true;
        value = parseUuid(*text);
        if (!value)
            return fault(BackupReader::tr("Feld „id“ ist keine gültige UUID: „%1“.").arg(*text));
        return true;
    }

    bool readBytes(QByteArrayView key, std::optional<QByteArray> &value)
    {
        value.reset();
        if (isNull())
            return true;
        if (m_cursor.peek() != JsonCursor::Kind::string)
            return wrongType(key, BackupReader::tr("Base64-Text"));
        QByteArray text;
        if (!m_cursor.readUtf8(text))
            return false;
        value = decodeBase64(text);
        if (!value)
            return fault(BackupReader::tr("Feld „%1“ ist kein gültiges Base64.").arg(QString::fromUtf8(key)));
        return true;
    }

    bool readPoem(PoemBackup &entry)
    {
        if (m_cursor.peek() != JsonCursor::Kind::object)
            return m_cursor.failed() ? false : fault(BackupReader::tr("Der Eintrag ist kein JSON-Objekt."));
        m_cursor.enterObject();
        bool hasObjectURI = false;
        bool hasInPodcast = false;
        bool hasIsPublished = false;
        QByteArrayView key;
        while (m_cursor.nextMember(key)) {
            bool ok = true;
            if (key == "id") {
                ok = readId(key, entry.id);
            } else if (key == "objectURI") {
                ok = readText(key, entry.objectURI);
                hasObjectURI = true;
            } else if (key == "title") {
                ok = readOptionalText(key, entry.title);
            } else if (key == "titleNormalized") {
                ok = readOptionalText(key, entry.titleNormalized);
            } else if (key == "category") {
                ok = readOptionalText(key, entry.category);
            } else if (key == "date") {
                ok = readOptionalDate(key, entry.date);
            } else if (key == "text") {
                ok = readOptionalText(key, entry.text);
            } else if (key == "richTextData") {
                ok = readBytes(key, entry.richTextData);
            } else if (key == "writerNotes") {
                ok = readOptionalText(key, entry.writerNotes);
            } else if (key == "externalId") {
                ok = readOptionalText(key, entry.externalId);
            } else if (key == "inPodcast") {
                ok = readFlag(key, entry.inPodcast);
                hasInPodcast = true;
            } else if (key == "isPublished") {
                ok = readFlag(key, entry.isPublished);
                hasIsPublished = true;
            } else if (key == "createdAt") {
                ok = readOptionalDate(key, entry.createdAt);
            } else if (key == "updatedAt") {
                ok = readOptionalDate(key, entry.updatedAt);
            } else if (key == "deletedAt") {
                ok = readOptionalDate(key, entry.deletedAt);
            } else {
                ok = m_cursor.skipValue();
            }
            if (!ok)
                return false;
        }
        if (m_cursor.failed())
            return false;
        if (!hasObjectURI)
            return missing("objectURI");
        if (!hasInPodcast)
            return missing("inPodcast");
        if (!hasIsPublished)
            return missing("isPublished");
        return true;
    }

    bool readPoems(QList<PoemBackup> &poems)
    {
        if (m_cursor.peek() != JsonCursor::Kind::array)
            return wrongType("poems", BackupReader::tr("Liste"));
        m_cursor.enterArray();
        while (m_cursor.nextElement()) {
            m_poemNumber = int(poems.size()) + 1;
            PoemBackup entry;
            if (!readPoem(entry))
                return false;
            poems.append(std::move(entry));
        }
        m_poemNumber = 0;
        return !m_cursor.failed();
    }

    bool readDocument(Backup &backup)
    {
        if (m_cursor.peek() != JsonCursor::Kind::object) {
            if (m_cursor.failed())
                return false;
            return fault(BackupReader::tr("Die Datei enthält kein Backup: Das Dokument ist kein JSON-Objekt."));
        }
        m_cursor.enterObject();
        bool hasApp = false;
        bool hasSchemaVersion = false;
        bool hasExportedAt = false;
        bool hasPoemCount = false;
        bool hasPoems = false;
        QByteArrayView key;
        while (m_cursor.nextMember(key)) {
            bool ok = true;
            if (key == "app") {
                ok = readText(key, backup.app);
                hasApp = true;
            } else if (key == "schemaVersion") {
                ok = readInteger(key, backup.schemaVersion);
                hasSchemaVersion = true;
            } else if (key == "exportedAt") {
                ok = readDate(key, backup.exportedAt);
                hasExportedAt = true;
            } else if (key == "poemCount") {
                ok = readInteger(key, backup.poemCount);
                hasPoemCount = true;
            } else if (key == "poems") {
                backup.poems.clear();
                ok = readPoems(backup.poems);
                hasPoems = true;
            } else {
                ok = m_cursor.skipValue();
            }
            if (!ok)
                return false;
        }
        if (!m_cursor.finish())
            return false;
        if (!hasApp)
            return missing("app");
        if (!hasSchemaVersion)
            return missing("schemaVersion");
        if (!hasExportedAt)
            return missing("exportedAt");
        if (!hasPoemCount)
            return missing("poemCount");
        if (!hasPoems)
            return missing("poems");
        return true;
    }

    JsonCursor m_cursor;
    QString m_error;
    int m_poemNumber = 0;
};

} // namespace

Result<Backup> BackupReader::read(const QString &path)
{
    const auto bytes = BoundedFileReader::read(path, maximumFileSize);
    if (!bytes)
        return bytes.error();
    return decode(*bytes);
}

Result<Backup> BackupReader::decode(QByteArrayView bytes)
{
    if (bytes.trimmed().isEmpty())
        return Error{BackupReader::tr("Die Datei ist leer.")};
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return Error{BackupReader::tr("Die Datei ist nicht UTF-8-kodiert (UTF-16 erkannt).")};
    // Editors on other systems like to prepend a byte-order mark; it carries nothing.
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    return Decoding(bytes).run();
}
