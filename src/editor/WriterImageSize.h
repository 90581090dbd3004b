#pragma once

#include <QString>

#include <array>

enum class WriterImageSize { small, medium, pageWidth };

inline constexpr std::array<WriterImageSize, 3> allWriterImageSizes = {WriterImageSize::small, WriterImageSize::medium,
                                                                       WriterImageSize::pageWidth};

QString title(WriterImageSize size);
// In points.
double targetWidth(WriterImageSize size);
