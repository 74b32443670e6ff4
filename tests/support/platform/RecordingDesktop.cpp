// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecordingDesktop.h"

#include <QObject>

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

namespace {

class RecordedQuestion final : public QObject, public FolderQuestion
{
public:
    explicit RecordedQuestion(std::function<void()> closed)
        : m_closed(std::move(closed))
    {}

    RecordedQuestion(const RecordedQuestion&) = delete;
    RecordedQuestion& operator=(const RecordedQuestion&) = delete;

    ~RecordedQuestion() override { m_closed(); }

private:
    std::function<void()> m_closed;
};

} // namespace

std::unique_ptr<FolderQuestion> RecordingFolderPicker::ask(const Question& question,
                                                           std::function<void(const Answer&)> answered)
{
    questions.push_back(question);
    m_answered = std::move(answered);
    auto made = std::make_unique<RecordedQuestion>([this] {
        ++closed;
        m_answered = {};
    });
    if (!available) {
        QMetaObject::invokeMethod(
            made.get(), [this] { answer(Unavailable()); }, Qt::QueuedConnection);
    }
    return made;
}

void RecordingFolderPicker::answer(const Answer& answer) const
{
    // A copy, because the one who hears it may close the question.
    if (const std::function<void(const Answer&)> answered = m_answered) {
        answered(answer);
    }
}

std::unique_ptr<PointerWatch> PlayedPointer::watch()
{
    auto made = std::make_unique<PointerWatch>();
    lastWatch = made.get();
    return made;
}

} // namespace lapsa::test
