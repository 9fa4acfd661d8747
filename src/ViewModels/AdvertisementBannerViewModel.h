#pragma once

#include "Models/Advertisement.h"
#include "Platform/Workspace.h"
#include "Services/AdvertisementService.h"

#include <QFutureWatcher>
#include <QObject>
#include <QTimer>

#include <optional>
#include <stop_token>

namespace Quillmere {

/// The promotion in the sidebar: shows one after the other, each for its own time, and reads the feed anew after each
/// round. It does nothing before start() and after stop().
class AdvertisementBannerViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY advertisementChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY advertisementChanged)
    Q_PROPERTY(Layer layer READ layer NOTIFY advertisementChanged)
    Q_PROPERTY(QUrl media READ media NOTIFY advertisementChanged)

public:
    /// What stands behind the text.
    enum class Layer { Fallback, Picture, Movie, Video };
    Q_ENUM(Layer)

    AdvertisementBannerViewModel(AdvertisementService &service, std::shared_ptr<const Workspace> workspace,
                                 QObject *parent = nullptr);
    ~AdvertisementBannerViewModel() override;

    /// Begins with a new round, whatever was under way.
    Q_INVOKABLE void start();
    Q_INVOKABLE void stop();
    /// Opens the page of the promotion in the browser.
    Q_INVOKABLE void open() const;

    [[nodiscard]] const Advertisement &advertisement() const { return m_advertisement; }
    [[nodiscard]] bool isRefreshing() const { return m_refreshTask.has_value(); }

    [[nodiscard]] QString title() const { return m_advertisement.title; }
    [[nodiscard]] QString subtitle() const { return m_advertisement.subtitle; }
    [[nodiscard]] Layer layer() const;
    /// Of the picture, the movie, or the video's still picture; empty for the fallback.
    [[nodiscard]] QUrl media() const;

Q_SIGNALS:
    void advertisementChanged();

private:
    void load();
    void beginRound();
    void showNext();
    void publish(const Advertisement &advertisement);
    void translateFallback();

    AdvertisementService &m_service;
    std::shared_ptr<const Workspace> m_workspace;
    Advertisement m_advertisement;
    std::optional<std::stop_source> m_refreshTask; ///< Of the loop that is running, if one is.
    QFutureWatcher<QList<Advertisement>> m_loading;
    QList<Advertisement> m_round;
    qsizetype m_next = 0; ///< Place in the round of the one that comes next.
    QTimer m_timer{this};
};

} // namespace Quillmere
