// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace lapsa {

/// Fades scrolled content out at an edge, into the window's background.
class ScrollFade final : public QWidget
{
    Q_OBJECT

public:
    ScrollFade(Qt::Edge edge, QWidget* parent);

    static constexpr int extent = 14;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Edge m_edge;
};

} // namespace lapsa
