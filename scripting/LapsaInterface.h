// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>

namespace lapsa {

class ListService;

/// `org.lapsa.Lapsa1` on the session bus, as described in org.lapsa.Lapsa1.xml. Only programs of the same user can
/// connect to that bus, so every caller is trusted as far as the user is, but no argument is.
class LapsaInterface final
{
public:
    /// Adds the interface to the object that represents the program on the bus, which must outlive this object. Calls
    /// that arrive from now on are kept until serve().
    explicit LapsaInterface(QObject& busObject);
    LapsaInterface(const LapsaInterface&) = delete;
    LapsaInterface& operator=(const LapsaInterface&) = delete;
    ~LapsaInterface();

    /// Passes calls to the service from now on, starting with those kept. Calls that arrive after its destruction are
    /// kept again.
    void serve(ListService& service);

private:
    class Adaptor;

    QPointer<Adaptor> m_adaptor;
};

} // namespace lapsa
