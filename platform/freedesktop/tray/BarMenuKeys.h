// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "StatusItem.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>

#include <memory>

namespace lapsa {

class X11InputMonitor;

/// Makes the shortcuts of a menu work that an X11 bar shows: bars write them beside the entries, but do not hear them.
class BarMenuKeys final : public QObject
{
    Q_OBJECT

public:
    BarMenuKeys();
    ~BarMenuKeys() override;

    void setEntries(QList<StatusMenuEntry> entries);

    /// The bar is about to show the menu. It need not tell when the menu is closed: from the first click on, or the
    /// first key that the menu does not get, nothing is heard any more.
    void menuOpened();
    void menuClosed();

private:
    void keyPressed(quint32 keyCode);
    void buttonPressed(quint32 button);

    QList<StatusMenuEntry> m_entries;
    std::unique_ptr<X11InputMonitor> m_keys;
    std::unique_ptr<X11InputMonitor> m_buttons;
    QElapsedTimer m_sinceOpened;
};

} // namespace lapsa
