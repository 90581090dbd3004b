#include "app/gui/WheelFocusGuard.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>
#include <QWidget>

WheelFocusGuard::WheelFocusGuard(QObject *parent) : QObject(parent)
{
}

bool WheelFocusGuard::takesWheelAsInput(const QObject *object)
{
    if (qobject_cast<const QScrollBar *>(object))
        return false;
    return qobject_cast<const QComboBox *>(object) || qobject_cast<const QAbstractSpinBox *>(object) ||
           qobject_cast<const QAbstractSlider *>(object);
}

bool WheelFocusGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Polish && takesWheelAsInput(watched)) {
        // With wheel focus, the first turn of the wheel would hand the control the focus.
        auto *widget = static_cast<QWidget *>(watched);
        if (widget->focusPolicy() == Qt::WheelFocus)
            widget->setFocusPolicy(Qt::StrongFocus);
        return false;
    }
    if (event->type() != QEvent::Wheel || !takesWheelAsInput(watched))
        return false;
    if (static_cast<QWidget *>(watched)->hasFocus())
        return false;
    // Filtered and ignored: the application hands the wheel on to the parent, which scrolls.
    event->ignore();
    return true;
}
