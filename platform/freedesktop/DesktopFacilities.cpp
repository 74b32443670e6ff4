// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"

#include "FileManagerSelection.h"
#include "HotKeys.h"
#include "PortalHotKeys.h"
#include "StatusButton.h"
#include "StatusItem.h"
#include "X11HotKeys.h"

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

/// The top right corner of the work area, with nothing to be seen.
class CornerStatusButton final : public StatusButton
{
public:
    [[nodiscard]] std::optional<QRect> frame() const override { return std::nullopt; }

    bool setTemplateImage(const QString&, int) override { return true; }

    void setTitle(const QString&) override {}

    void setToolTip(const QString&) override {}

    void setHighlighted(bool) override {}
};

class CornerStatusItem final : public StatusItem
{
public:
    [[nodiscard]] StatusButton* button() override { return &m_button; }

    void setMenu(QList<StatusMenuEntry>) override {}

private:
    CornerStatusButton m_button;
};

class NoStatusBar final : public StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override { return std::make_unique<CornerStatusItem>(); }
};

/// Through XWayland they reach as far as its windows have the focus.
std::unique_ptr<HotKeys> makeGrabs()
{
    if (xcb_connection_t* const connection = X11HotKeys::toolkitConnection()) {
        return std::make_unique<X11HotKeys>(connection);
    }
    return std::make_unique<NoHotKeys>();
}

} // namespace

std::unique_ptr<StatusBar> makeStatusBar()
{
    return std::make_unique<NoStatusBar>();
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
    return std::make_unique<NoFileManagerSelection>();
}

} // namespace lapsa
