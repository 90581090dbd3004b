#pragma once

#include <QString>
#include <QUrl>

#include <array>
#include <optional>

// The public German rhyme dictionaries the editor can open for a word. The program only
// opens the result page in the browser and reads nothing back.
enum class RhymeProvider { reimsuche, wasReimtSichAuf, reimOMat };

inline constexpr std::array<RhymeProvider, 3> allRhymeProviders = {
    RhymeProvider::reimsuche, RhymeProvider::wasReimtSichAuf, RhymeProvider::reimOMat};

// The raw value and menu title: the name of the website.
QString rawValue(RhymeProvider provider);
QString title(RhymeProvider provider);
// Scheme and host of the site.
QString siteRoot(RhymeProvider provider);
// By raw value or case name, ignoring case.
std::optional<RhymeProvider> rhymeProviderFromName(const QString &name);
// An unknown or empty identifier reads as the first provider.
RhymeProvider rhymeProviderFromIdentifier(const QString &identifier);
// The preferred provider of the preferences.
RhymeProvider defaultRhymeProvider();

class RhymeLookup {
public:
    // Trimmed, cut at the first character that is not a letter; empty when there is no word.
    static QString normalizedRhymeWord(const QString &text);
    // The result page for the word; nothing when the word is empty.
    static std::optional<QUrl> url(RhymeProvider provider, const QString &word);
    // The word percent-encoded so that it cannot leave its path segment or query value.
    static QByteArray encodedWord(const QString &word);
};
