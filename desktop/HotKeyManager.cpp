// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HotKeyManager.h"

#include "HotKeys.h"
#include "Localized.h"

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

HotKeyManager::HotKeyManager(HotKeys& hotKeys, std::function<void()> handler)
    : m_hotKeys(hotKeys)
    , m_handler(std::move(handler))
{}

HotKeyManager::~HotKeyManager() = default;

void HotKeyManager::registerHotKey()
{
    m_hotKeyRef = m_hotKeys.registerHotKey({.identifier = u"CHX1-1"_s,
                                            .description = Localized::addFinderSelection(),
                                            .letter = 'y',
                                            .super = true,
                                            .shift = true},
                                           m_handler);
}

void HotKeyManager::unregister()
{
    m_hotKeyRef.reset();
}

} // namespace lapsa
