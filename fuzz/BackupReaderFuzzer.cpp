// Feeds arbitrary bytes to the backup reader and, underneath it, to the JSON cursor on its
// own: neither may crash, hang or touch memory it does not own, and a failed read must say
// why.
#include "backup/BackupReader.h"
#include "backup/JsonCursor.h"

#include <cstdint>
#include <cstdlib>

namespace {

// Walks any document the way the reader does, value by value, so that paths the backup
// layout never reaches (deep nesting, every scalar kind) are exercised too.
bool walk(JsonCursor &cursor, int depth)
{
    if (depth > 64)
        return cursor.skipValue();
    switch (cursor.peek()) {
    case JsonCursor::Kind::object: {
        if (!cursor.enterObject())
            return false;
        QByteArrayView key;
        while (cursor.nextMember(key)) {
            if (!walk(cursor, depth + 1))
                return false;
        }
        return !cursor.failed();
    }
    case JsonCursor::Kind::array:
        if (!cursor.enterArray())
            return false;
        while (cursor.nextElement()) {
            if (!walk(cursor, depth + 1))
                return false;
        }
        return !cursor.failed();
    case JsonCursor::Kind::string: {
        QString value;
        return cursor.readString(value);
    }
    case JsonCursor::Kind::number: {
        double value = 0;
        return cursor.readNumber(value);
    }
    case JsonCursor::Kind::boolean: {
        bool value = false;
        return cursor.readBool(value);
    }
    case JsonCursor::Kind::null:
        return cursor.readNull();
    case JsonCursor::Kind::invalid:
        return false;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    JsonCursor cursor(bytes);
    if ((!walk(cursor, 0) || !cursor.finish()) && cursor.errorText().isEmpty())
        std::abort();

    const auto backup = BackupReader::decode(bytes);
    if (!backup.ok() && backup.error().message.isEmpty())
        std::abort();
    return 0;
}
