// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>

namespace lapsa::test {

/// Another text size of the desktop, until it goes. The usual one is 10 points.
class TextSize final
{
public:
    explicit TextSize(double points) { setPoints(points); }

    TextSize(const TextSize&) = delete;
    TextSize& operator=(const TextSize&) = delete;

    ~TextSize() { setPoints(10); }

private:
    static void setPoints(double points)
    {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }
};

} // namespace lapsa::test
