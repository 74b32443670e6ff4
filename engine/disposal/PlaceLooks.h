// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemPlaces.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <memory>

namespace lapsa {

class Lanes;
class MainQueue;

/// Looks at the places of items, each on the lane of its path. Main thread only.
class PlaceLooks final
{
public:
    /// Both must outlive this object.
    PlaceLooks(Lanes& lanes, MainQueue& mainQueue);
    /// Looks under way call nothing any more.
    ~PlaceLooks();

    /// Calls `then` once: when every path has answered, or after five seconds with the answers so far. A disk that
    /// takes longer may be dead: its path is not asked again until it has answered. Items that are nowhere are left
    /// out.
    void look(const QStringList& paths, std::function<void(const QList<SeenPlace>& seen)> then);

private:
    struct Round;
    struct State;

    void begin(const std::shared_ptr<Round>& round, const QStringList& paths);
    static void answered(State& state, const std::shared_ptr<Round>& round, const QString& path);

    Lanes& m_lanes;
    MainQueue& m_mainQueue;
    std::shared_ptr<State> m_state;
};

} // namespace lapsa
