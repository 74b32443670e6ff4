// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WaitingLine.h"

#include "Announcer.h"
#include "ElidedLabel.h"
#include "Localized.h"
#include "MainQueue.h"

#include <QVBoxLayout>

#include <chrono>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

constexpr auto patience = 500ms;

} // namespace

WaitingLine::WaitingLine(MainQueue& mainQueue, QWidget* parent)
    : QWidget(parent)
    , m_mainQueue(mainQueue)
    , m_text(new ElidedLabel(calloutText, ColorRole::Secondary, this))
    , m_announcer(new Announcer(this))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(m_text);
}

WaitingLine::~WaitingLine() = default;

void WaitingLine::begin()
{
    m_text->setText({});
    m_patience = m_mainQueue.asyncAfter(patience, [this] {
        m_text->setText(Localized::waitingForDisk());
        m_announcer->announce(Localized::waitingForDisk());
    });
}

void WaitingLine::end()
{
    m_patience.reset();
    m_text->setText({});
}

} // namespace lapsa
