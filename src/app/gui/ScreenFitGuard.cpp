#include "app/gui/ScreenFitGuard.h"

#include <QDialog>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>

namespace {

const char *const fittedProperty = "odeleafScreenFitted";

} // namespace

ScreenFitGuard::ScreenFitGuard(QObject *parent) : QObject(parent)
{
}

QSize ScreenFitGuard::decorationAllowance()
{
    return {8, 36};
}

QRect ScreenFitGuard::fittedGeometry(const QRect &wanted, const QSize &minimum, const QRect &available)
{
    const QSize room = (available.size() - decorationAllowance()).expandedTo(QSize(1, 1));
    const QSize size = wanted.size().boundedTo(room).expandedTo(minimum);
    QRect fitted(wanted.topLeft(), size);
    // The title bar sits above the window's own top: the allowance less the lower border.
    const int top = available.top() + decorationAllowance().height() - decorationAllowance().width() / 2;
    if (fitted.right() > available.right())
        fitted.moveRight(available.right());
    if (fitted.bottom() > available.bottom())
        fitted.moveBottom(available.bottom());
    if (fitted.left() < available.left())
        fitted.moveLeft(available.left());
    if (fitted.top() < top)
        fitted.moveTop(top);
    return fitted;
}

bool ScreenFitGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show)
        return false;
    auto *window = qobject_cast<QWidget *>(watched);
    if (!window || !window->isWindow() || !(qobject_cast<QDialog *>(window) || qobject_cast<QMainWindow *>(window)))
        return false;
    if (window->property(fittedProperty).toBool() || window->isMaximized() || window->isFullScreen())
        return false;
    window->setProperty(fittedProperty, true);
    const QScreen *screen = window->screen();
    if (!screen)
        return false;
    const QRect fitted = fittedGeometry(window->geometry(), window->minimumSizeHint().expandedTo(window->minimumSize()),
                                        screen->availableGeometry());
    if (fitted != window->geometry())
        window->setGeometry(fitted);
    return false;
}
