#pragma once

#include <QList>
#include <QString>

#include <optional>

enum class MetricalFoot { jambus, trochaeus, daktylus, anapaest, amphibrachys };

// In the order a tie between equally fitting feet is decided.
inline const QList<MetricalFoot> allMetricalFeet = {MetricalFoot::jambus, MetricalFoot::trochaeus,
                                                    MetricalFoot::daktylus, MetricalFoot::anapaest,
                                                    MetricalFoot::amphibrachys};

// The German term, also the name in the command line's JSON.
QString footName(MetricalFoot foot);
std::optional<MetricalFoot> footFromName(const QString &name);
// One foot as 'x' (unstressed) and 'X' (stressed).
QString footPattern(MetricalFoot foot);
// The line of that many syllables in the foot: the foot repeated from its start and cut off.
QString footTemplate(MetricalFoot foot, int syllables);
