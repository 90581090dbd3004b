#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

// The program's logo (a leaf over a line of verse), shipped as a resource at twice its size.
class OdeLeafLogo {
public:
    // Device pixel ratio 2, so its device-independent size is its size in points.
    static QImage image();
    static std::optional<QByteArray> png();
    static QString svgPath();
};
