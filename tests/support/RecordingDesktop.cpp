// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecordingDesktop.h"

namespace lapsa::test {

namespace {

/// Calls `release` when the key is given back.
class RecordedRegistration final : public HotKeyRegistration
{
public:
    explicit RecordedRegistration(std::function<void()> release)
        : m_release(std::move(release))
    {}

    RecordedRegistration(const RecordedRegistration&) = delete;
    RecordedRegistration& operator=(const RecordedRegistration&) = delete;

    ~RecordedRegistration() override { m_release(); }

private:
    std::function<void()> m_release;
};

} // namespace

bool RecordingStatusButton::setTemplateImage(const QString& name, int size)
{
    images.push_back({name, size});
    return imageFound;
}

std::unique_ptr<StatusItem> RecordingStatusBar::makeStatusItem()
{
    auto made = std::make_unique<RecordingStatusItem>();
    made->hasButton = itemsHaveButtons;
    made->theButton.imageFound = imagesFound;
    item = made.get();
    return made;
}

std::unique_ptr<HotKeyRegistration> RecordingHotKeys::registerHotKey(const HotKey& key, std::function<void()> pressed)
{
    registered.push_back(key);
    handler = std::move(pressed);
    return std::make_unique<RecordedRegistration>([this] {
        ++released;
        handler = nullptr;
    });
}

void RecordingHotKeys::press() const
{
    if (handler) {
        handler();
    }
}

} // namespace lapsa::test
