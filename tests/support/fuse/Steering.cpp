// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Steering.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace lapsa::test {

void Steering::begin(const char* path)
{
    std::unique_lock lock(m_mutex);
    if (isStopped(path)) {
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !isStopped(path); });
        --m_waiting;
    }
    lock.unlock();
    if (const int delay = m_delay; delay > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    }
}

bool Steering::isStopped(const char* path) const
{
    return m_stopped && (m_stopped->empty() || *m_stopped == path);
}

int Steering::answer(int error) const
{
    const int lost = m_lost;
    return error == 0 ? lost : error;
}

void Steering::obey(int control)
{
    std::string line;
    for (char character = 0; ::read(control, &character, 1) == 1;) {
        if (character != '\n') {
            line += character;
            continue;
        }
        obeyLine(line);
        line.clear();
        if (::write(control, ".", 1) != 1) {
            return;
        }
    }
}

void Steering::obeyLine(const std::string& line)
{
    const std::size_t space = line.find(' ');
    const std::string verb = line.substr(0, space);
    const std::string value = space == std::string::npos ? std::string() : line.substr(space + 1);
    std::unique_lock lock(m_mutex);
    if (verb == "stop") {
        m_stopped = value;
    } else if (verb == "go") {
        m_stopped.reset();
        m_changed.notify_all();
    } else if (verb == "await") {
        m_changed.wait(lock, [&] { return m_waiting > 0; });
    } else if (verb == "delay") {
        m_delay = std::atoi(value.c_str());
    } else if (verb == "lose") {
        m_lost = std::atoi(value.c_str());
    }
}

} // namespace lapsa::test
