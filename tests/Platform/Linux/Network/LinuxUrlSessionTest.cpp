#include "Platform/Linux/Network/LinuxUrlSession.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/Network/TlsHost.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFutureWatcher>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr qint64 enough = 1024 * 1024;

template<typename Response>
Result<Response> awaited(const QFuture<Result<Response>> &future)
{
    QFutureWatcher<Result<Response>> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(future);
    if (!future.isFinished())
        loop.exec();
    return future.result();
}

/// Why there is no answer; nothing when there is one.
template<typename Response>
std::optional<Failure::Kind> failureOf(const Result<Response> &result)
{
    return result ? std::nullopt : std::optional(result.failure().kind);
}

class LinuxUrlSessionTest : public testing::Test
{
protected:
    void SetUp() override { QUILLMERE_NEED(host.reasonWhyNot()); }

    [[nodiscard]] UrlRequest request(const QString &path, qint64 mostBytes = enough) const
    {
        UrlRequest made;
        made.url = host.url(path);
        made.mostBytes = mostBytes;
        return made;
    }
    [[nodiscard]] Result<UrlResponse> fetched(const UrlRequest &asked) { return awaited(session.data(asked, {})); }
    [[nodiscard]] Result<UrlResponse> fetched(const QString &path) { return fetched(request(path)); }
    [[nodiscard]] std::string lastRequest() const { return host.requests().last().toLower().toStdString(); }
    void redirect(const QString &path, const QByteArray &target)
    {
        host.answer(path, 302, "moved", "Location: " + target + "\r\n");
    }

    TlsHost host;
    LinuxUrlSession session{host.trust()};
};

} // namespace

TEST_F(LinuxUrlSessionTest, FetchesOverTls)
{
    host.answer(u"/a?b=c"_qs, 200, "hello");

    const Result<UrlResponse> response = fetched(u"/a?b=c"_qs);

    ASSERT_TRUE(response) << response.failure().detail.toStdString();
    EXPECT_EQ(response.value(), (UrlResponse{200, "hello"}));
}

TEST_F(LinuxUrlSessionTest, AStatusOfFailureIsAnAnswerToo)
{
    host.answer(u"/404"_qs, 404, "none");
    host.answer(u"/500"_qs, 500, "broken");

    EXPECT_EQ(fetched(u"/404"_qs).valueOr({}), (UrlResponse{404, "none"}));
    EXPECT_EQ(fetched(u"/500"_qs).valueOr({}), (UrlResponse{500, "broken"}));
}

TEST_F(LinuxUrlSessionTest, TrustsNobodyWhomTheSystemDoesNotTrust)
{
    host.answer(u"/"_qs, 200, "hello");
    LinuxUrlSession stranger;

    EXPECT_EQ(failureOf(awaited(stranger.data(request(u"/"_qs), {}))), Failure::Kind::Other);
    EXPECT_TRUE(host.requests().isEmpty());
}

TEST_F(LinuxUrlSessionTest, TrustsNobodyUnderAnotherName)
{
    host.answer(u"/"_qs, 200, "hello");
    UrlRequest asked = request(u"/"_qs);
    asked.url.setHost(u"127.0.0.1"_qs);

    EXPECT_EQ(failureOf(fetched(asked)), Failure::Kind::Other);
    EXPECT_TRUE(host.requests().isEmpty());
}

TEST_F(LinuxUrlSessionTest, FetchesNothingButHttps)
{
    for (const char *scheme : {"http", "ftp", "file", "data", ""}) {
        UrlRequest asked = request(u"/"_qs);
        asked.url.setScheme(QString::fromLatin1(scheme));
        const QFuture<Result<UrlResponse>> future = session.data(asked, {});
        ASSERT_TRUE(future.isFinished()) << scheme;
        EXPECT_EQ(failureOf(future.result()), Failure::Kind::NotSupported) << scheme;
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(host.connections(), 0);
}

TEST_F(LinuxUrlSessionTest, AsksNobodyForANameThatCannotExist)
{
    for (const char *name : {"farhop.example", "a.b.example", "host.invalid", "HOST.EXAMPLE"}) {
        UrlRequest asked;
        asked.url = QUrl(u"https://%1/"_qs.arg(QString::fromLatin1(name)));
        const QFuture<Result<UrlResponse>> future = session.data(asked, {});
        ASSERT_TRUE(future.isFinished()) << name;
        EXPECT_EQ(failureOf(future.result()), Failure::Kind::NotFound) << name;
    }
}

TEST_F(LinuxUrlSessionTest, FollowsARedirectionThatStaysWithHttps)
{
    redirect(u"/old"_qs, "/new");
    host.answer(u"/new"_qs, 200, "here");

    EXPECT_EQ(fetched(u"/old"_qs).valueOr({}), (UrlResponse{200, "here"}));
}

TEST_F(LinuxUrlSessionTest, FollowsNoRedirectionToAnotherScheme)
{
    for (const QByteArray &target :
         {host.url(u"/new"_qs).toEncoded().replace("https:", "http:"), QByteArray("file:///etc/hostname"),
          QByteArray("data:text/plain,hello"), QByteArray("ftp://localhost/new")}) {
        redirect(u"/old"_qs, target);
        EXPECT_EQ(failureOf(fetched(u"/old"_qs)), Failure::Kind::Other) << target.constData();
    }
    EXPECT_EQ(host.requests().size(), 4);
}

TEST_F(LinuxUrlSessionTest, GivesUpARedirectionInACircle)
{
    redirect(u"/round"_qs, "/round");

    EXPECT_EQ(failureOf(fetched(u"/round"_qs)), Failure::Kind::Other);
    // Qt asks again where the host closes a connection under a request, which so is counted twice.
    EXPECT_LE(host.requests().size(), 2 * 7);
}

TEST_F(LinuxUrlSessionTest, TakesABodyOfTheMostBytesAndNoneThatIsLonger)
{
    host.answer(u"/a"_qs, 200, QByteArray(1000, 'a'));

    EXPECT_TRUE(fetched(request(u"/a"_qs, 1000)));
    EXPECT_EQ(failureOf(fetched(request(u"/a"_qs, 999))), Failure::Kind::NoSpace);
}

TEST_F(LinuxUrlSessionTest, EndsABodyWithoutEnd)
{
    host.flood(u"/flood"_qs);

    EXPECT_EQ(failureOf(fetched(u"/flood"_qs)), Failure::Kind::NoSpace);
}

TEST_F(LinuxUrlSessionTest, UnpacksNothing)
{
    host.answer(u"/packed"_qs, 200, "\x1f\x8b not really", "Content-Encoding: gzip\r\n");

    EXPECT_EQ(fetched(u"/packed"_qs).valueOr({}).body, QByteArray("\x1f\x8b not really"));
    EXPECT_THAT(lastRequest(), HasSubstr("accept-encoding: identity"));
}

TEST_F(LinuxUrlSessionTest, IsNoAnswerWhenItBreaksOffHalfway)
{
    host.answer(u"/half"_qs, "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf");

    EXPECT_EQ(failureOf(fetched(u"/half"_qs)), Failure::Kind::Other);
}

TEST_F(LinuxUrlSessionTest, IsNoAnswerWhenItIsNotHttp)
{
    host.answer(u"/odd"_qs, "hello\r\n\r\n");

    EXPECT_FALSE(fetched(u"/odd"_qs));
}

TEST_F(LinuxUrlSessionTest, GivesUpAHostThatSaysNothing)
{
    UrlRequest asked = request(u"/silent"_qs);
    asked.timeout = std::chrono::milliseconds(300);

    EXPECT_EQ(failureOf(fetched(asked)), Failure::Kind::Other);
    EXPECT_EQ(host.requests().size(), 1);
}

TEST_F(LinuxUrlSessionTest, GivesUpAHostThatSendsAByteNowAndThen)
{
    host.trickle(u"/trickle"_qs);
    UrlRequest asked = request(u"/trickle"_qs);
    asked.timeout = std::chrono::minutes(10);
    asked.deadline = std::chrono::milliseconds(300);

    EXPECT_EQ(failureOf(fetched(asked)), Failure::Kind::Other);
    EXPECT_EQ(host.requests().size(), 1);
}

TEST_F(LinuxUrlSessionTest, TellsWhereNobodyListens)
{
    UrlRequest asked = request(u"/"_qs);
    asked.url.setPort(1);

    EXPECT_EQ(failureOf(fetched(asked)), Failure::Kind::Other);
}

TEST_F(LinuxUrlSessionTest, EndsAtOnceWhenItIsStopped)
{
    std::stop_source stop;
    const QFuture<Result<UrlResponse>> future = session.data(request(u"/silent"_qs), stop.get_token());
    EXPECT_FALSE(future.isFinished());

    stop.request_stop();

    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(failureOf(future.result()), Failure::Kind::Cancelled);
}

TEST_F(LinuxUrlSessionTest, BeginsNothingThatIsStoppedAlready)
{
    std::stop_source stop;
    stop.request_stop();

    const QFuture<Result<UrlResponse>> future = session.data(request(u"/"_qs), stop.get_token());

    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(failureOf(future.result()), Failure::Kind::Cancelled);
}

TEST_F(LinuxUrlSessionTest, EndsWhatIsOnItsWayWhenItGoes)
{
    QFuture<Result<UrlResponse>> future;
    {
        LinuxUrlSession passing(host.trust());
        future = passing.data(request(u"/silent"_qs), {});
    }

    ASSERT_TRUE(future.isFinished());
    EXPECT_EQ(failureOf(future.result()), Failure::Kind::Cancelled);
}

TEST_F(LinuxUrlSessionTest, KeepsAndSendsNoCookies)
{
    host.answer(u"/"_qs, 200, "hello", "Set-Cookie: a=b\r\n");
    ASSERT_TRUE(fetched(u"/"_qs));

    ASSERT_TRUE(fetched(u"/"_qs));

    EXPECT_THAT(lastRequest(), Not(HasSubstr("cookie")));
}

TEST_F(LinuxUrlSessionTest, SaysNothingOfTheMachineAndItsUser)
{
    host.answer(u"/"_qs, 200, "hello");

    ASSERT_TRUE(fetched(u"/"_qs));

    EXPECT_THAT(lastRequest(), HasSubstr("user-agent: quillmere\r\n"));
    EXPECT_THAT(lastRequest(), Not(HasSubstr("referer")));
}

TEST_F(LinuxUrlSessionTest, AsksThoseOnTheWayForWhatTheHostHasNow)
{
    host.answer(u"/"_qs, 200, "hello");
    UrlRequest asked = request(u"/"_qs);
    ASSERT_TRUE(fetched(asked));
    EXPECT_THAT(lastRequest(), Not(HasSubstr("cache-control")));

    asked.ignoresCache = true;
    ASSERT_TRUE(fetched(asked));

    EXPECT_THAT(lastRequest(), HasSubstr("cache-control: no-cache"));
}

TEST_F(LinuxUrlSessionTest, DownloadsIntoAFileThatGoesWithItsLastReader)
{
    const QByteArray content(300'000, 'm');
    host.answer(u"/movie"_qs, 200, content);
    QString location;
    {
        const Result<DownloadResponse> response = awaited(session.download(request(u"/movie"_qs), {}));
        ASSERT_TRUE(response) << response.failure().detail.toStdString();
        EXPECT_EQ(response.value().status, 200);
        location = response.value().file->location().toLocalFile();
        QFile file(location);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), content);
    }
    EXPECT_FALSE(QFile::exists(location));
}

TEST_F(LinuxUrlSessionTest, DownloadsWithinTheSameBounds)
{
    host.flood(u"/flood"_qs);
    UrlRequest plain = request(u"/"_qs);
    plain.url.setScheme(u"http"_qs);

    EXPECT_EQ(failureOf(awaited(session.download(request(u"/flood"_qs), {}))), Failure::Kind::NoSpace);
    EXPECT_EQ(failureOf(awaited(session.download(plain, {}))), Failure::Kind::NotSupported);
}
