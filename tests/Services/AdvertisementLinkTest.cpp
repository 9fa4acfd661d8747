#include "Services/AdvertisementService.h"
#include "Utilities/PromotionalHost.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

/// @p rest behind the promotional host.
QString onHost(const QString &rest)
{
    return u"https://"_qs + promotionalHost() + rest;
}

QString localized(const QString &address, Language language)
{
    return AdvertisementService::localizedAdURL(QUrl(address), language).toString(QUrl::FullyEncoded);
}

std::optional<QUrl> thumbnail(const QString &address)
{
    return AdvertisementService::thumbnailURL(QUrl(address));
}

} // namespace

struct LinkCase
{
    const char *name;
    const char *rest;
    Language language;
    const char *expected;
};

class AdvertisementLinkTest : public testing::TestWithParam<LinkCase>
{
};

TEST_P(AdvertisementLinkTest, LeadsToThePageInTheReadersLanguage)
{
    EXPECT_EQ(localized(onHost(QString::fromLatin1(GetParam().rest)), GetParam().language),
              onHost(QString::fromLatin1(GetParam().expected)));
}

INSTANTIATE_TEST_SUITE_P(
    Links, AdvertisementLinkTest,
    testing::Values(LinkCase{"BareHostInRussian", "", Language::Russian, "/ru/"},
                    LinkCase{"BareHostWithSlash", "/", Language::Spanish, "/es/"},
                    LinkCase{"SegmentEnBecomesRu", "/en/offer", Language::Russian, "/ru/offer"},
                    LinkCase{"SegmentRuBecomesEn", "/ru/", Language::English, "/en/"},
                    LinkCase{"SegmentAlone", "/es", Language::English, "/en"},
                    LinkCase{"OtherSegmentIsPutBehind", "/offer/", Language::Spanish, "/es/offer/"},
                    LinkCase{"LongerSegmentIsNoLanguage", "/end/x", Language::Russian, "/ru/end/x"},
                    LinkCase{"SystemCountsAsEnglish", "/ru/x", Language::System, "/en/x"},
                    LinkCase{"QueryAndFragmentStay", "/x?a=%2F#part", Language::Russian, "/ru/x?a=%2F#part"},
                    LinkCase{"EncodedNamesStay", "/a%2Fb/c%20d", Language::Russian, "/ru/a%2Fb/c%20d"}),
    [](const auto &info) { return info.param.name; });

TEST(AdvertisementLinksTest, AnAddressOnAnyOtherHostStaysAsItIs)
{
    EXPECT_EQ(localized(u"https://other.test/en/offer"_qs, Language::Russian), u"https://other.test/en/offer");
    EXPECT_EQ(localized(u"https://other.test"_qs, Language::Russian), u"https://other.test");
    EXPECT_EQ(localized(u"mailto:somebody@other.test"_qs, Language::Russian), u"mailto:somebody@other.test");
}

TEST(AdvertisementLinksTest, NamingTheHostAnywhereIsEnough)
{
    const QString query = u"?from="_qs + promotionalHost();

    EXPECT_EQ(localized(u"https://other.test/x"_qs + query, Language::Spanish), u"https://other.test/es/x"_qs + query);
}

TEST(AdvertisementLinksTest, TheStillPictureOfAVideoIsFoundByItsId)
{
    const QUrl picture(u"https://img.youtube.com/vi/dQw4w9WgXcQ/hqdefault.jpg"_qs);

    EXPECT_EQ(thumbnail(u"https://www.youtube.com/watch?v=dQw4w9WgXcQ"_qs), picture);
    EXPECT_EQ(thumbnail(u"https://youtu.be/dQw4w9WgXcQ?t=9"_qs), picture);
    EXPECT_EQ(thumbnail(u"https://m.youtube.com/watch?list=a&v=dQw4w9WgXcQ"_qs), picture);
}

TEST(AdvertisementLinksTest, WithoutAnIdThereIsNoStillPicture)
{
    EXPECT_EQ(thumbnail(u"https://www.youtube.com/channel"_qs), std::nullopt);
    EXPECT_EQ(thumbnail(u"https://youtu.be/"_qs), std::nullopt);
    EXPECT_EQ(thumbnail(u"https://host.test/youtube?v=abc"_qs), std::nullopt);
}

TEST(AdvertisementLinksTest, AnIdCannotLeaveItsPlaceInTheAddress)
{
    EXPECT_EQ(thumbnail(u"https://www.youtube.com/watch?v=..%2F..%2Fx%3Fy"_qs)->toString(QUrl::FullyEncoded),
              u"https://img.youtube.com/vi/..%2F..%2Fx%3Fy/hqdefault.jpg");
}
