#ifndef ZVCONTROL_ZVSTYLEWIDGET_P_H
#define ZVCONTROL_ZVSTYLEWIDGET_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class ZVStyleWidgetPrivate
{
public:
    // Guarded, so that a target destroyed while enabled simply turns the feature off.
    QPointer<QWidget> target;
    bool enabled = false;
    // True between a press that started a drag and the release (or the loss of the left
    // button); moves outside that window are not drags.
    bool dragging = false;
    // Cursor position at the press relative to the window's frame top-left, kept so the
    // pressed point stays under the cursor for the whole drag.
    QPoint pressOffset;

    QWidget* targetWindow() const { return enabled && target ? target->window() : nullptr; }
};

#endif // ZVCONTROL_ZVSTYLEWIDGET_P_H
