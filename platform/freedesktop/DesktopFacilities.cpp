// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"

#include "FileManagerSelection.h"
#include "FreedesktopWindowSystem.h"
#include "HotKeys.h"
#include "PointerMonitor.h"
#include "PortalFolderPicker.h"
#include "PortalHotKeys.h"
#include "ProgramIdentity.h"
#include "StatusItem.h"
#include "TrayStatusItem.h"
#include "X11FileManagerSelection.h"
#include "X11HotKeys.h"
#include "X11InputMonitor.h"
#include "X11Screen.h"

#include <utility>

namespace lapsa {

namespace {

class NoHotKeys final : public HotKeys
{
public:
    [[nodiscard]] std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey&, std::function<void()>) override
    {
        return std::make_unique<HotKeyRegistration>();
    }
};

class NoFileManagerSelection final : public FileManagerSelection
{
public:
    [[nodiscard]] Answer ask() override { return Nothing(); }
};

class Tray final : public StatusBar
{
public:
    explicit Tray(ProgramIdentity identity)
        : m_identity(std::move(identity))
    {}

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override
    {
        return std::make_unique<TrayStatusItem>(m_identity);
    }

private:
    ProgramIdentity m_identity;
};

class NoPointerMonitor final : public PointerMonitor
{
public:
    [[nodiscard]] std::unique_ptr<PointerWatch> watch() override { return std::make_unique<PointerWatch>(); }
};

class X11PointerWatch final : public PointerWatch
{
public:
    X11PointerWatch()
    {
        connect(&m_buttons, &X11InputMonitor::pressed, this, &PointerWatch::pressed);
        connect(&m_buttons, &X11InputMonitor::released, this, [this](quint32 button) {
            if (!X11InputMonitor::isWheel(button)) {
                emit released();
            }
        });
    }

private:
    X11InputMonitor m_buttons{X11InputMonitor::Kind::Buttons};
};

class X11PointerMonitor final : public PointerMonitor
{
public:
    [[nodiscard]] std::unique_ptr<PointerWatch> watch() override { return std::make_unique<X11PointerWatch>(); }
};

/// Through XWayland, grabs work only while an XWayland window has the focus.
std::unique_ptr<HotKeys> makeGrabs()
{
    if (xcb_connection_t* const connection = x11Connection()) {
        return std::make_unique<X11HotKeys>(connection);
    }
    return std::make_unique<NoHotKeys>();
}

} // namespace

std::unique_ptr<StatusBar> makeStatusBar(const ProgramIdentity& identity)
{
    return std::make_unique<Tray>(identity);
}

std::unique_ptr<HotKeys> makeHotKeys()
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        return makeGrabs();
    }
    return std::make_unique<PortalHotKeys>(makeGrabs());
}

std::unique_ptr<FileManagerSelection> makeFileManagerSelection()
{
    if (x11Connection() != nullptr) {
        return std::make_unique<X11FileManagerSelection>();
    }
    return std::make_unique<NoFileManagerSelection>();
}

std::unique_ptr<FolderPicker> makeFolderPicker()
{
    using Windows = PortalFolderPicker::Windows;
    return std::make_unique<PortalFolderPicker>(x11Connection() != nullptr ? Windows::X11 : Windows::Unnamed);
}

std::unique_ptr<WindowSystem> makeWindowSystem()
{
    return std::make_unique<FreedesktopWindowSystem>();
}

std::unique_ptr<PointerMonitor> makePointerMonitor()
{
    if (x11Connection() != nullptr) {
        return std::make_unique<X11PointerMonitor>();
    }
    return std::make_unique<NoPointerMonitor>();
}

} // namespace lapsa
