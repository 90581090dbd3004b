#include "editor/WriterImageSize.h"

#include <QCoreApplication>

QString title(WriterImageSize size)
{
    switch (size) {
    case WriterImageSize::small:
        return QCoreApplication::translate("WriterImageSize", "Klein");
    case WriterImageSize::medium:
        return QCoreApplication::translate("WriterImageSize", "Mittel");
    case WriterImageSize::pageWidth:
        return QCoreApplication::translate("WriterImageSize", "Seitenbreite");
    }
    return {};
}

double targetWidth(WriterImageSize size)
{
    switch (size) {
    case WriterImageSize::small:
        return 280;
    case WriterImageSize::medium:
        return 520;
    case WriterImageSize::pageWidth:
        return 780;
    }
    return 0;
}
