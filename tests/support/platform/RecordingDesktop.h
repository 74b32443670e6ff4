// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileManagerSelection.h"
#include "FolderPicker.h"
#include "HotKeys.h"
#include "NotificationCentre.h"
#include "PointerMonitor.h"
#include "RecordingStatusBar.h"
#include "WindowSystem.h"

#include <QList>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace lapsa::test {

/// Hot keys that a test presses.
class RecordingHotKeys final : public HotKeys
{
public:
    [[nodiscard]] std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey& key,
                                                                     std::function<void()> pressed) override;

    /// Nothing happens while the key is not registered.
    void press() const;

    QList<HotKey> registered;
    /// How many of them were given back.
    int released = 0;
    std::function<void()> handler;
};

/// A file manager that answers what it is told to.
class PlayedSelection final : public FileManagerSelection
{
public:
    [[nodiscard]] Answer ask() override { return answer; }

    Answer answer = Nothing();
};

/// A dialog of the desktop that is answered by the test; without an answer there is no such dialog.
class RecordingFolderPicker final : public FolderPicker
{
public:
    [[nodiscard]] std::unique_ptr<FolderQuestion> ask(const Question& question,
                                                      std::function<void(const Answer&)> answered) override;

    /// Answers the question that was asked last, unless it was withdrawn.
    void answer(const Answer& answer) const;

    bool available = false;
    QList<Question> questions;
    /// How many of them were withdrawn or have been answered.
    int closed = 0;

private:
    std::function<void(const Answer&)> m_answered;
};

class RecordingNotificationCentre final : public NotificationCentre
{
public:
    void requestAuthorization() override { ++authorizationRequests; }

    void add(const NotificationRequest& request) override { requests.push_back(request); }

    int authorizationRequests = 0;
    QList<NotificationRequest> requests;
};

/// A window system without a compositing manager, until a test starts one.
class PlainWindowSystem final : public WindowSystem
{
public:
    [[nodiscard]] bool compositingAvailable() const override { return m_compositing; }

    void setCompositing(bool compositing)
    {
        m_compositing = compositing;
        emit compositingChanged();
    }

    [[nodiscard]] bool honoursPlaces() const override { return placesHonoured; }

    void keepOutOfTaskbars(const QWindow& /*window*/) override {}

    bool placesHonoured = true;

private:
    bool m_compositing = false;
};

/// Mouse buttons that a test presses.
class PlayedPointer final : public PointerMonitor
{
public:
    [[nodiscard]] std::unique_ptr<PointerWatch> watch() override;

    /// The watch that was made last; null when it is gone.
    QPointer<PointerWatch> lastWatch;
};

} // namespace lapsa::test
