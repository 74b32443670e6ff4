// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace lapsa::test {

/// Another text size of the desktop, until it goes. The usual one is 10 points.
class TextSize final
{
public:
    explicit TextSize(double points) { setPoints(points); }

    TextSize(const TextSize&) = delete;
    TextSize& operator=(const TextSize&) = delete;

    ~TextSize() { setPoints(10); }

    /// Tells all widgets about the new size. The toolkit does that by itself only within its event loop.
    static void tellWidgets()
    {
        for (QWidget* const widget : QApplication::allWidgets()) {
            QEvent event(QEvent::ApplicationFontChange);
            QApplication::sendEvent(widget, &event);
        }
        QApplication::processEvents();
    }

private:
    static void setPoints(double points)
    {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }
};

} // namespace lapsa::test
