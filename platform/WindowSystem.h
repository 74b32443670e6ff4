// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QWindow;

namespace lapsa {

/// Window system features that the toolkit does not offer.
class WindowSystem : public QObject
{
    Q_OBJECT

public:
    /// Whether windows can be translucent now.
    [[nodiscard]] virtual bool compositingAvailable() const = 0;

    /// Whether windows appear where the program puts them, rather than where the compositor wants them.
    [[nodiscard]] virtual bool honoursPlaces() const = 0;

    /// Keeps a window out of taskbars and pagers until it is hidden: call it before each show. Does nothing on window
    /// systems without such a state.
    virtual void keepOutOfTaskbars(const QWindow& window) = 0;

signals:
    /// Compositing may have ended or begun.
    void compositingChanged();
};

} // namespace lapsa
