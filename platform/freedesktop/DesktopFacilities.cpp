// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"

#include "FileManagerSelection.h"
#include "HotKeys.h"
#include "StatusButton.h"
#include "StatusItem.h"
#include "ToolkitConnection.h"
#include "X11FileManagerSelection.h"

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

} // namespace

std::unique_ptr<StatusBar> makeStatusBar()
{
    return std::make_unique<NoStatusBar>();
}

std::unique_ptr<HotKeys> makeHotKeys()
{
    return std::make_unique<NoHotKeys>();
}

std::unique_ptr<FileManagerSelection> makeFileManagerSelection()
{
    if (toolkitConnection() != nullptr) {
        return std::make_unique<X11FileManagerSelection>();
    }
    return std::make_unique<NoFileManagerSelection>();
}

} // namespace lapsa
