#include "Platform/Linux/Files/LinuxUserDefaults.h"

#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Files/FileReplacement.h"
#include "Platform/Linux/Files/FolderMaking.h"
#include "Utilities/PropertyListLimits.h"

#include <QLocale>

#include <cerrno>
#include <tuple>

#include <sys/stat.h>

namespace Quillmere {

namespace {

constexpr mode_t modeOfFile = 0600;
constexpr mode_t modeOfFolders = 0700;

/// "YES", "true", "1", "007" and the like: the first letter, or the first digit that is not zero, decides.
bool meansTrue(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;
    if (u"tTyY"_qs.contains(trimmed.front()))
        return true;
    qsizetype index = trimmed.front() == u'-' || trimmed.front() == u'+' ? 1 : 0;
    while (index < trimmed.size() && trimmed.at(index) == u'0')
        ++index;
    return index < trimmed.size() && trimmed.at(index) >= u'1' && trimmed.at(index) <= u'9';
}

} // namespace

LinuxUserDefaults::LinuxUserDefaults(FilePath file)
    : m_file(std::move(file))
{
    load();
}

FilePath LinuxUserDefaults::fileOf(const FilePath &home)
{
    return home.appending("Library/Preferences/com.veltrane.quillmere.plist");
}

std::optional<QByteArray> LinuxUserDefaults::data(const QString &key) const
{
    return m_values.data(key);
}

std::optional<QString> LinuxUserDefaults::string(const QString &key) const
{
    if (const std::optional<qint64> integer = m_values.integer(key))
        return QString::number(*integer);
    if (const std::optional<double> real = m_values.real(key))
        return QString::number(*real, 'g', QLocale::FloatingPointShortest);
    if (const std::optional<bool> boolean = m_values.boolean(key))
        return *boolean ? u"1"_qs : u"0"_qs;
    return m_values.string(key);
}

bool LinuxUserDefaults::boolean(const QString &key) const
{
    if (const std::optional<bool> boolean = m_values.boolean(key))
        return *boolean;
    if (const std::optional<qint64> integer = m_values.integer(key))
        return *integer != 0;
    if (const std::optional<double> real = m_values.real(key))
        return *real != 0;
    return meansTrue(m_values.string(key).value_or(QString()));
}

std::optional<QStringList> LinuxUserDefaults::stringArray(const QString &key) const
{
    return m_values.stringArray(key);
}

std::optional<QDateTime> LinuxUserDefaults::date(const QString &key) const
{
    return m_values.date(key);
}

void LinuxUserDefaults::setData(const QString &key, const QByteArray &value)
{
    m_values.setData(key, value);
    store();
}

void LinuxUserDefaults::setString(const QString &key, const QString &value)
{
    m_values.setString(key, value);
    store();
}

void LinuxUserDefaults::setBoolean(const QString &key, bool value)
{
    m_values.setBoolean(key, value);
    store();
}

void LinuxUserDefaults::setStringArray(const QString &key, const QStringList &value)
{
    m_values.setStringArray(key, value);
    store();
}

void LinuxUserDefaults::setDate(const QString &key, const QDateTime &value)
{
    m_values.setDate(key, value);
    store();
}

void LinuxUserDefaults::remove(const QString &key)
{
    m_values.remove(key);
    store();
}

void LinuxUserDefaults::load()
{
    const Result<QByteArray> contents = readBounded(m_file, PropertyListLimits::mostBytes);
    if (!contents) {
        m_mayStore
            = contents.failure().kind == Failure::Kind::NotFound || contents.failure().kind == Failure::Kind::Malformed;
        return;
    }
    Result<PropertyList> stored = PropertyList::read(contents.value());
    if (stored)
        m_values = std::move(stored.value());
}

void LinuxUserDefaults::store() const
{
    if (!m_mayStore)
        return;
    makeFolders(m_file.deletingLastPathComponent(), modeOfFolders);
    // A change that cannot be stored holds in memory; the next one tries again with all of them.
    std::ignore = replaceFile(m_file, m_values.written(PropertyList::Form::Binary), modeOfFile);
}

} // namespace Quillmere
