#pragma once

#include "Utilities/BackgroundWork.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace Quillmere {

/// Brings news of background work to an object of the GUI thread. What is told before the last news was shown takes
/// its place, so that fast work never makes the screen late. Copies speak of the same news. Any thread tells.
template<typename Object, typename News>
class LatestNews
{
public:
    using Show = std::function<void(Object &, const News &)>;

    /// @p show runs on the GUI thread, as long as @p object lives.
    LatestNews(QPointer<Object> object, Show show)
        : m_object(std::move(object))
        , m_state(std::make_shared<State>(std::move(show)))
    {
    }

    void tell(News news) const
    {
        {
            const std::scoped_lock lock(m_state->mutex);
            if (std::exchange(m_state->waiting, std::move(news)))
                return;
        }
        onMainQueue(m_object, [news = *this](Object &) { news.deliver(); });
    }

    /// Shows what was told last and is not shown yet. On the GUI thread; for the end of the work, which may come before
    /// its last news.
    void deliver() const
    {
        std::optional<News> latest;
        {
            const std::scoped_lock lock(m_state->mutex);
            latest = std::exchange(m_state->waiting, std::nullopt);
        }
        if (latest && m_object)
            m_state->show(*m_object, *latest);
    }

private:
    struct State
    {
        explicit State(Show show)
            : show(std::move(show))
        {
        }

        const Show show;
        std::mutex mutex; ///< Around the member below.
        std::optional<News> waiting;
    };

    QPointer<Object> m_object;
    std::shared_ptr<State> m_state;
};

} // namespace Quillmere
