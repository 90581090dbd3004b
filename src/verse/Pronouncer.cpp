#include "verse/Pronouncer.h"

#include "verse/SpellingSyllables.h"

#include <QMutex>
#include <QMutexLocker>
#include <QRegularExpression>

#include <espeak-ng/speak_lib.h>

namespace {

// espeak-ng keeps one voice and one set of buffers for the whole process and is not
// thread-safe, so every call into it goes through this one lock, whichever thread asks.
struct EspeakSession {
    QMutex mutex;
    bool initialised = false;
    bool available = false;
    QString voice;

    // Under the lock.
    bool selectVoice(const QString &language)
    {
        if (!initialised) {
            initialised = true;
            available = espeak_Initialize(AUDIO_OUTPUT_RETRIEVAL, 0, nullptr, espeakINITIALIZE_DONT_EXIT) > 0;
        }
        if (!available)
            return false;
        if (voice == language)
            return true;
        if (espeak_SetVoiceByName(language.toLatin1().constData()) != EE_OK)
            return false;
        voice = language;
        return true;
    }
};

EspeakSession &espeakSession()
{
    static EspeakSession session;
    return session;
}

// Under the lock. espeak-ng answers clause by clause; a single word is usually one.
QString phonemeText(const QString &word)
{
    const QByteArray utf8 = word.toUtf8();
    const void *cursor = utf8.constData();
    const int separatedNames = int('|') << 8;
    QStringList clauses;
    while (cursor) {
        const char *phonemes = espeak_TextToPhonemes(&cursor, espeakCHARS_UTF8, separatedNames);
        if (phonemes)
            clauses.append(QString::fromUtf8(phonemes));
    }
    return clauses.join(QLatin1Char(' '));
}

} // namespace

bool Pronouncer::hasSpeechData()
{
    EspeakSession &session = espeakSession();
    const QMutexLocker lock(&session.mutex);
    return session.selectVoice(QStringLiteral("de"));
}

bool Pronouncer::isVowelPhoneme(const QString &phoneme)
{
    static const QString vowelStarts = QStringLiteral("aeiouyAEIOUVWY0@3&");
    return !phoneme.isEmpty() && vowelStarts.contains(phoneme.front());
}

WordSound Pronouncer::parse(const QString &phonemeText, const QString &language)
{
    const bool english = language == QLatin1String("en");
    WordSound sound;
    LexicalStress pending = LexicalStress::unstressed;
    const QStringList tokens = phonemeText.split(QRegularExpression(QStringLiteral("[ |]")), Qt::SkipEmptyParts);
    for (QString token : tokens) {
        // Pauses and clause marks.
        if (token.startsWith(QLatin1Char('_')))
            continue;
        while (!token.isEmpty() && QStringLiteral("',%=").contains(token.front())) {
            const QChar mark = token.front();
            if (mark == QLatin1Char('\''))
                pending = LexicalStress::primary;
            else if (mark == QLatin1Char(',') && pending != LexicalStress::primary)
                pending = LexicalStress::secondary;
            token.remove(0, 1);
        }
        if (token.isEmpty() || token == QLatin1String(";"))
            continue;
        // English "our", "hour", "flower": verse counts the r-coloured glide as one syllable.
        const bool glide = english && token == QLatin1String("3") && !sound.phonemes.isEmpty() &&
                           sound.phonemes.last() == QLatin1String("aU") && pending == LexicalStress::unstressed;
        if (isVowelPhoneme(token) && !glide) {
            sound.nuclei.append(int(sound.phonemes.size()));
            sound.stresses.append(pending);
            pending = LexicalStress::unstressed;
        }
        sound.phonemes.append(token);
    }
    return sound;
}

WordSound Pronouncer::pronounce(const QString &word, const QString &language)
{
    const QString key = language + QLatin1Char('\x1f') + word.toLower();
    const auto known = m_cache.constFind(key);
    if (known != m_cache.constEnd())
        return *known;
    WordSound sound;
    {
        EspeakSession &session = espeakSession();
        const QMutexLocker lock(&session.mutex);
        if (session.selectVoice(language))
            sound = parse(phonemeText(word.toLower()), language);
    }
    if (sound.nuclei.isEmpty())
        sound = SpellingSyllables::of(word, language);
    m_cache.insert(key, sound);
    return sound;
}
