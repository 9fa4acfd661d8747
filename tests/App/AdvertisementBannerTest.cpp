#include "App/ScreensFixture.h"

#include "Utilities/BackgroundWork.h"

#include <QBuffer>
#include <QImage>
#include <QTest>

using namespace Quillmere;

namespace {

QByteArray picture()
{
    QImage image(400, 252, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

class AdvertisementBannerTest : public ScreensFixture
{
protected:
    void serve(const QByteArray &media) const
    {
        machine.urls->serve(AdvertisementService::endpoint(),
                            R"({"title": "Offer", "text": "Of the day", "link": "https://other.test/page", "media": ")"
                                + media + "\"}");
    }
    /// The colour at the middle of the card of that name.
    [[nodiscard]] QColor colorOf(const QString &name, const Person &person) const
    {
        const QRect card = person.placeOf(QAccessible::Button, name);
        return app->mainWindow()->grabWindow().pixelColor(card.center() - QPoint(0, 30));
    }
};

} // namespace

TEST_F(AdvertisementBannerTest, ShowsTheFallbackWhereThereIsNoFeed)
{
    const Person person = open();

    EXPECT_TRUE(person.reads(u"Farhop. We are not a VPN."_qs));
    EXPECT_EQ(machine.urls->requests().size(), 1);
}

TEST_F(AdvertisementBannerTest, LetsTheWholeTextBeReadWhereThePointerRests)
{
    const Person person = open();
    for (const Language language : {Language::English, Language::Spanish, Language::Russian}) {
        app->localizer().setLanguage(language);
        const QString message = AdvertisementService::fallback(language).subtitle;
        const QRect card = person.placeOf(QAccessible::Button, u"Farhop. "_qs + message);
        ASSERT_FALSE(card.isEmpty());
        EXPECT_FALSE(showsWhole(message));

        QTest::mouseMove(app->mainWindow(), card.center());
        EXPECT_TRUE(QTest::qWaitFor([&] { return showsWhole(message); })) << message.toStdString();

        QTest::mouseMove(app->mainWindow(), QPoint(600, 300));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !showsWhole(message); })) << message.toStdString();
    }
}

TEST_F(AdvertisementBannerTest, IsOfOneHeightAndSaysWhatItIsWhereThePointerRests)
{
    serve("");
    const Person person = open();
    const QRect card = person.placeOf(QAccessible::Button, u"Offer. Of the day"_qs);
    EXPECT_EQ(card.height(), 126);
    EXPECT_FALSE(showsWhole(u"Advertisement"_qs));

    QTest::mouseMove(app->mainWindow(), card.center());

    EXPECT_TRUE(QTest::qWaitFor([&] { return showsWhole(u"Advertisement"_qs); }));
}

TEST_F(AdvertisementBannerTest, LetsTheWholeTextBeReadByTheKeyboard)
{
    const Person person = open();
    const QString message = AdvertisementService::fallback(Language::English).subtitle;

    ASSERT_TRUE(person.tabTo(u"Farhop. "_qs + message));

    EXPECT_TRUE(showsWhole(message));
}

TEST_F(AdvertisementBannerTest, ShowsTheFeedsPictureWithItsText)
{
    const QUrl address(u"https://host.test/a.png"_qs);
    machine.urls->serve(address, picture());
    serve(address.toEncoded());

    const Person person = open();

    ASSERT_TRUE(person.sees(QAccessible::Button, u"Offer. Of the day"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return colorOf(u"Offer. Of the day"_qs, person) == QColor(Qt::red); }));
    EXPECT_FALSE(showsSymbol(u"play.circle.fill"_qs));
    EXPECT_FALSE(showsSymbol(u"play.rectangle.fill"_qs));
}

TEST_F(AdvertisementBannerTest, StaysAsItIsWithADarkPlaceForAPictureThatDoesNotCome)
{
    serve("https://host.test/missing.png");

    const Person person = open();

    ASSERT_TRUE(person.sees(QAccessible::Button, u"Offer. Of the day"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.urls->requests().size() == 2; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return colorOf(u"Offer. Of the day"_qs, person).lightness() < 60; }));
    EXPECT_TRUE(person.click(QAccessible::Button, u"Offer. Of the day"_qs));
}

TEST_F(AdvertisementBannerTest, ShowsTheStillPictureOfAVideo)
{
    machine.urls->serve(QUrl(u"https://img.youtube.com/vi/dQw4w9WgXcQ/hqdefault.jpg"_qs), picture());
    serve("dQw4w9WgXcQ");

    const Person person = open();

    ASSERT_TRUE(person.sees(QAccessible::Button, u"Offer. Of the day"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.urls->requests().size() == 2; }));
    EXPECT_EQ(machine.urls->requests().last().url.host(), u"img.youtube.com");
    EXPECT_TRUE(QTest::qWaitFor([&] { return showsSymbol(u"play.circle.fill"_qs); }));
    EXPECT_TRUE(showsSymbol(u"play.rectangle.fill"_qs));
}

TEST_F(AdvertisementBannerTest, FetchesNoMovieThatItCannotShow)
{
    serve("https://host.test/a.mp4");

    const Person person = open();

    ASSERT_TRUE(person.sees(QAccessible::Button, u"Offer. Of the day"_qs));
    EXPECT_EQ(machine.urls->requests().size(), 1);
}

TEST_F(AdvertisementBannerTest, OpensThePageOnAClickAndByTheKeyboard)
{
    serve("");
    const Person person = open();
    ASSERT_TRUE(person.click(QAccessible::Button, u"Offer. Of the day"_qs));
    ASSERT_TRUE(person.tabTo(u"Offer. Of the day"_qs));
    person.press(Qt::Key_Space);

    backgroundPool().waitForDone();

    const QUrl page(u"https://other.test/page"_qs);
    EXPECT_EQ(machine.workspace->opened(), QList({page, page}));
}

TEST_F(AdvertisementBannerTest, ReadsAnItemsTextAsPlainText)
{
    machine.urls->serve(AdvertisementService::endpoint(),
                        R"({"title": "<img src='https://host.test/spy.png'>", "link": "https://other.test/"})");

    const Person person = open();

    EXPECT_TRUE(person.sees(QAccessible::Button, u"<img src='https://host.test/spy.png'>"_qs));
    EXPECT_EQ(machine.urls->requests().size(), 1);
}

TEST_F(AdvertisementBannerTest, RestsWhileTheWindowIsHiddenAndReadsTheFeedAnewWhenItComesBack)
{
    machine.urls->hold();
    (void)open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return machine.urls->waiting() == 1; }));

    app->mainWindow()->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.urls->waiting() == 0; }));
    EXPECT_EQ(machine.urls->requests().size(), 1);
    app->showMainWindow();

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.urls->waiting() == 1; }));
    EXPECT_EQ(machine.urls->requests().size(), 2);
}

TEST_F(AdvertisementBannerTest, SpeaksTheNewLanguageAtOnce)
{
    const Person person = open();
    ASSERT_TRUE(person.reads(u"We are not a VPN."_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.reads(u"No somos una VPN."_qs));
}
