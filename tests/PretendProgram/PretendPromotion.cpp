#include "PretendProgram/PretendPromotion.h"

#include "Services/AdvertisementService.h"

#include <QFile>
#include <QFileInfo>

namespace Quillmere {

namespace {

const QUrl feed = AdvertisementService::endpoint();
const QByteArray video = "dQw4w9WgXcQ";

QByteArray promotion(const QByteArray &media)
{
    return R"({"title": "A harbour town at dusk, and how to get there", "link": "https://travel.test/", "text": )"
           R"("Forty routes by train and by boat, with maps for every one of them and no need to book ahead.", "media": ")"
        + media + "\"}";
}

} // namespace

void fillPretendPromotion(PretendMachine &machine, const QString &media)
{
    const QString name = QFileInfo(media).fileName();
    const bool isVideo = name.startsWith(u"video");
    const QUrl address(isVideo ? u"https://img.youtube.com/vi/"_qs + QString::fromLatin1(video) + u"/hqdefault.jpg"_qs
                               : u"https://media.test/"_qs + name);
    machine.urls->serve(feed, promotion(isVideo ? video : name.isEmpty() ? QByteArray() : address.toEncoded()));
    QFile file(media);
    if (file.open(QIODevice::ReadOnly))
        machine.urls->serve(address, file.readAll());
    else
        machine.urls->holdBack(address);
}

} // namespace Quillmere
