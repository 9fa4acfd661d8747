#include "ViewModels/AdvertisementBannerViewModel.h"

#include "Utilities/LocalizationManager.h"
#include "ViewModels/DesktopRequests.h"

#include <chrono>
#include <utility>

namespace Quillmere {

namespace {

Advertisement currentFallback()
{
    return AdvertisementService::fallback(Localizer::shared().effectiveLanguage());
}

/// The feed comes from elsewhere: what it names is opened in a browser or not at all.
bool isWebPage(const QUrl &url)
{
    return (url.scheme() == u"https" || url.scheme() == u"http") && !url.host().isEmpty();
}

} // namespace

AdvertisementBannerViewModel::AdvertisementBannerViewModel(AdvertisementService &service,
                                                           std::shared_ptr<const Workspace> workspace, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_workspace(std::move(workspace))
    , m_advertisement(currentFallback())
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_loading, &QFutureWatcherBase::finished, this, &AdvertisementBannerViewModel::beginRound);
    connect(&m_timer, &QTimer::timeout, this, &AdvertisementBannerViewModel::showNext);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &AdvertisementBannerViewModel::translateFallback);
}

AdvertisementBannerViewModel::~AdvertisementBannerViewModel()
{
    stop();
}

void AdvertisementBannerViewModel::start()
{
    stop();
    m_refreshTask.emplace();
    load();
}

void AdvertisementBannerViewModel::stop()
{
    m_timer.stop();
    if (std::optional<std::stop_source> task = std::exchange(m_refreshTask, std::nullopt))
        task->request_stop();
}

void AdvertisementBannerViewModel::load()
{
    m_loading.setFuture(m_service.loadAdvertisements(m_refreshTask->get_token()));
}

void AdvertisementBannerViewModel::beginRound()
{
    // What was stopped meanwhile comes to its end all the same.
    if (!m_refreshTask)
        return;
    const QList<Advertisement> loaded = m_loading.result();
    m_round = loaded.isEmpty() ? QList{currentFallback()} : loaded;
    m_next = 0;
    m_service.beginRound(m_round);
    showNext();
}

void AdvertisementBannerViewModel::showNext()
{
    if (m_next == m_round.size())
        return load();
    const Advertisement &next = m_round.at(m_next++);
    publish(next.isFallback ? currentFallback() : next);
    m_timer.start(std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(next.duration)));
}

void AdvertisementBannerViewModel::publish(const Advertisement &advertisement)
{
    if (m_advertisement == advertisement)
        return;
    m_advertisement = advertisement;
    Q_EMIT advertisementChanged();
}

void AdvertisementBannerViewModel::translateFallback()
{
    if (m_advertisement.isFallback)
        publish(currentFallback());
}

void AdvertisementBannerViewModel::open() const
{
    const QUrl url
        = AdvertisementService::localizedAdURL(m_advertisement.clickURL, Localizer::shared().effectiveLanguage());
    if (isWebPage(url))
        openWithoutWaiting(m_workspace, url);
}

AdvertisementBannerViewModel::Layer AdvertisementBannerViewModel::layer() const
{
    if (media().isEmpty())
        return Layer::Fallback;
    switch (m_advertisement.mediaKind) {
    case AdvertisementMediaKind::Image:
        return Layer::Picture;
    case AdvertisementMediaKind::Movie:
        return Layer::Movie;
    case AdvertisementMediaKind::Youtube:
        return Layer::Video;
    case AdvertisementMediaKind::None:
        return Layer::Fallback;
    }
    Q_UNREACHABLE();
}

QUrl AdvertisementBannerViewModel::media() const
{
    return AdvertisementService::shownMedia(m_advertisement).value_or(QUrl());
}

} // namespace Quillmere
