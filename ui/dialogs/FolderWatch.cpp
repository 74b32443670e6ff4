// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderWatch.h"

#include "ChooserModel.h"
#include "MainQueue.h"

#include <QEvent>
#include <QWidget>

#include <chrono>
#include <utility>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

constexpr auto interval = 2s;

} // namespace

FolderWatch::FolderWatch(MainQueue& mainQueue, ChooserModel& model, QWidget& dialog)
    : QObject(&dialog)
    , m_mainQueue(mainQueue)
    , m_model(model)
{
    dialog.installEventFilter(this);
}

FolderWatch::~FolderWatch() = default;

bool FolderWatch::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show:
        m_task = m_mainQueue.repeatEvery(interval, [this] { m_model.refresh(); });
        break;
    case QEvent::Hide:
        m_task.reset();
        break;
    case QEvent::WindowActivate:
        if (std::exchange(m_wasActive, true)) {
            m_model.readAgain();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lapsa
