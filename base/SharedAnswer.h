// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <mutex>
#include <optional>
#include <utility>

namespace lapsa {

/// The answer to a question that takes long, remembered for all threads: threads come and go, and must not each ask
/// again. Remembers the last question only.
template <typename Question, typename Answer>
class SharedAnswer final
{
public:
    /// Calls `ask` if the question is another one than the last.
    template <typename Ask>
    [[nodiscard]] Answer to(const Question& question, Ask ask)
    {
        {
            const std::scoped_lock lock(m_mutex);
            if (m_known && m_known->first == question) {
                return m_known->second;
            }
        }
        // Not under the lock: a thread that waits for an answer must not keep others waiting.
        const Answer answer = ask(question);
        const std::scoped_lock lock(m_mutex);
        m_known = {question, answer};
        return answer;
    }

private:
    std::mutex m_mutex;
    std::optional<std::pair<Question, Answer>> m_known;
};

} // namespace lapsa
