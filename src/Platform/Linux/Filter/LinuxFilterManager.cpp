#include "Platform/Linux/Filter/LinuxFilterManager.h"

#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Filter/FilterPolicyRecord.h"
#include "Platform/Linux/Filter/PolicyHelperRun.h"

#include <QFutureWatcher>
#include <QtConcurrentRun>

#include <unistd.h>

namespace Quillmere {

namespace {

constexpr qsizetype mostBytesOfPolicy = 4 * 1024 * 1024;

} // namespace

LinuxFilterManager::LinuxFilterManager(FilePath policy, QStringList helper)
    : m_policy(std::move(policy))
    , m_helper(std::move(helper))
{
}

FilePath LinuxFilterManager::policyFile()
{
    return FilePath("/etc/quillmere/filter-policy.json");
}

QStringList LinuxFilterManager::policyHelper()
{
    const QStringList helper = {u"/usr/libexec/quillmere/quillmere-admin"_qs, u"filter-policy"_qs};
    const QStringList elevated = {u"/usr/bin/pkexec"_qs, u"--disable-internal-agent"_qs};
    return ::geteuid() == 0 ? helper : elevated + helper;
}

void LinuxFilterManager::loadFromPreferences(Completion completion)
{
    auto *reading = new QFutureWatcher<Result<QByteArray>>(&m_life);
    QObject::connect(reading, &QFutureWatcherBase::finished, &m_life,
                     [this, reading, completion = std::move(completion)] {
                         reading->deleteLater();
                         const Result<QByteArray> contents = reading->result();
                         const bool isMissing = !contents && contents.failure().kind == Failure::Kind::NotFound;
                         if (!contents && !isMissing) {
                             completion(contents.failure().detail);
                             return;
                         }
                         take(contents.valueOr({}));
                         completion(std::nullopt);
                     });
    // A quick read: it must not queue up behind long scans or password dialogs, which have pools of their own.
    reading->setFuture(QtConcurrent::run([policy = m_policy] { return readBounded(policy, mostBytesOfPolicy); }));
}

void LinuxFilterManager::take(const QByteArray &contents)
{
    const std::optional<FilterPolicyRecord> record = readFilterPolicyRecord(contents);
    providerConfiguration = record ? std::optional(record->configuration) : std::nullopt;
    localizedDescription = record ? record->localizedDescription : QString();
    isEnabled = record && record->isEnabled;
}

void LinuxFilterManager::saveToPreferences(Completion completion)
{
    FilterPolicyRecord record;
    record.configuration = providerConfiguration.value_or(FilterProviderConfiguration());
    record.localizedDescription = localizedDescription;
    record.isEnabled = isEnabled;
    PolicyHelperRun::start(m_helper, written(record), m_life, std::move(completion));
}

} // namespace Quillmere
