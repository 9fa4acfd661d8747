#include "ViewModels/DiskUtilityState.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

#include <tuple>
#include <utility>

namespace Quillmere {

namespace {

/// What an alert says: keys of its texts.
struct AlertWords
{
    int step;
    QString titleKey;
    QString messageKey;
    QString confirmKey;
};

QString textOf(const VolumeInfo &volume)
{
    return volume.name + u" ("_qs + FilePath::displayText(volume.bsdName.toUtf8()) + u") - "_qs
        + formatByteCount(volume.totalSize);
}

QString textOfNone()
{
    return localized(u"disk.selectDrive"_qs);
}

AlertWords wordsOf(const DiskAlertState &state)
{
    switch (state.alert) {
    case DiskAlert::Confirm2:
        return {2, u"disk.confirm2"_qs, u"disk.systemWarning"_qs, u"disk.proceed"_qs};
    case DiskAlert::Confirm3:
        return {3, u"disk.confirm3"_qs, u"disk.finalWarning"_qs, u"disk.eraseSystem"_qs};
    case DiskAlert::Finished:
        return {0, u"disk.operationFinished"_qs, state.hasSucceeded ? u"disk.success"_qs : u"disk.failure"_qs,
                u"common.ok"_qs};
    default:
        return {1, u"disk.confirm1"_qs, u"disk.eraseWarning"_qs, u"disk.proceed"_qs};
    }
}

} // namespace

DiskUtilityState::DiskUtilityState(ToolsViewModel &tools, QObject *parent)
    : QObject(parent)
    , m_tools(tools)
{
    const auto showAnew = [this] {
        Q_EMIT volumesChanged();
        Q_EMIT selectionChanged();
    };
    connect(&m_tools, &ToolsViewModel::connectedVolumesChanged, this, showAnew);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, showAnew);
    connect(this, &DiskUtilityState::selectionChanged, this, &DiskUtilityState::lockChanged);
    connect(this, &DiskUtilityState::modeChanged, this, &DiskUtilityState::lockChanged);
}

QStringList DiskUtilityState::volumeTexts() const
{
    QStringList texts = {textOfNone()};
    for (const VolumeInfo &volume : m_tools.connectedVolumes())
        texts.append(textOf(volume));
    return texts;
}

int DiskUtilityState::selectedRow() const
{
    if (!m_selectedVolume)
        return 0;
    const qsizetype at = m_tools.connectedVolumes().indexOf(*m_selectedVolume);
    return at < 0 ? -1 : int(at) + 1;
}

QString DiskUtilityState::selectedText() const
{
    return m_selectedVolume ? textOf(*m_selectedVolume) : textOfNone();
}

VolumeDetails DiskUtilityState::details() const
{
    if (!m_selectedVolume)
        return {};
    const VolumeInfo &volume = *m_selectedVolume;
    return {
        volume.name,   volume.path.displayText(),         u"/dev/"_qs + FilePath::displayText(volume.bsdName.toUtf8()),
        volume.fsType, formatByteCount(volume.totalSize), volume.isInternal};
}

void DiskUtilityState::setSelectedMode(EraseMode mode)
{
    if (std::exchange(m_selectedMode, mode) != mode)
        Q_EMIT modeChanged();
}

bool DiskUtilityState::isSecureBlocked() const
{
    return m_selectedMode == EraseMode::Secure && m_selectedVolume && m_selectedVolume->isInternal;
}

bool DiskUtilityState::isAsking() const
{
    switch (alert()) {
    case DiskAlert::Confirm1:
    case DiskAlert::Confirm2:
    case DiskAlert::Confirm3:
    case DiskAlert::Finished:
        return true;
    case DiskAlert::None:
    case DiskAlert::Blocked:
    case DiskAlert::Running:
        return false;
    }
    Q_UNREACHABLE();
}

QString DiskUtilityState::symbol() const
{
    return isOver() && m_shownAlert.hasSucceeded ? u"checkmark.circle"_qs : u"exclamationmark.triangle"_qs;
}

int DiskUtilityState::step() const
{
    return wordsOf(m_shownAlert).step;
}

QString DiskUtilityState::titleKey() const
{
    return wordsOf(m_shownAlert).titleKey;
}

QString DiskUtilityState::messageKey() const
{
    return wordsOf(m_shownAlert).messageKey;
}

QString DiskUtilityState::confirmKey() const
{
    return wordsOf(m_shownAlert).confirmKey;
}

void DiskUtilityState::setConfirmInputText(const QString &text)
{
    if (std::exchange(m_confirmInputText, text) != text)
        Q_EMIT confirmInputTextChanged();
}

void DiskUtilityState::reset()
{
    std::ignore = m_opening.begin();
    select(std::nullopt);
    setSelectedMode(EraseMode::Quick);
    enter({});
    setConfirmInputText({});
}

void DiskUtilityState::appear()
{
    m_tools.loadVolumes();
    if (!m_selectedVolume)
        select(m_tools.connectedVolumes().first());
}

void DiskUtilityState::selectRow(int row)
{
    const QList<VolumeInfo> &volumes = m_tools.connectedVolumes();
    select(row >= 1 && row <= volumes.size() ? std::optional(volumes[row - 1]) : std::nullopt);
}

void DiskUtilityState::select(const std::optional<VolumeInfo> &volume)
{
    m_selectedVolume = volume;
    Q_EMIT selectionChanged();
}

void DiskUtilityState::run()
{
    if (alert() == DiskAlert::None && m_selectedVolume && !isSecureBlocked())
        enter({DiskAlert::Confirm1});
}

void DiskUtilityState::confirm()
{
    if (alert() == DiskAlert::Confirm3)
        eraseSystem();
    else if (alert() == DiskAlert::Finished)
        dismiss();
    else
        proceed();
}

void DiskUtilityState::proceed()
{
    if (alert() == DiskAlert::Confirm1 && m_selectedVolume && m_selectedVolume->isInternal)
        enter({DiskAlert::Confirm2});
    else if (alert() == DiskAlert::Confirm1)
        runErase();
    else if (alert() == DiskAlert::Confirm2)
        enter({DiskAlert::Confirm3});
}

void DiskUtilityState::eraseSystem()
{
    if (alert() != DiskAlert::Confirm3)
        return;
    const bool isConfirmed = m_confirmInputText.trimmed().toUpper() == u"ERASE";
    setConfirmInputText({});
    if (isConfirmed)
        runErase();
    else
        enter({});
}

void DiskUtilityState::dismiss()
{
    if (alert() == DiskAlert::Running)
        return;
    setConfirmInputText({});
    enter({});
}

void DiskUtilityState::enter(const DiskAlertState &state)
{
    if (std::exchange(m_alertState, state) == state)
        return;
    if (isAsking())
        m_shownAlert = state;
    Q_EMIT alertChanged();
}

void DiskUtilityState::runErase()
{
    if (!m_selectedVolume)
        return;
    enter({DiskAlert::Running});
    erase(*m_selectedVolume, m_selectedMode);
}

QCoro::Task<> DiskUtilityState::erase(VolumeInfo volume, EraseMode mode)
{
    const QPointer self(this);
    const std::stop_token opening = m_opening.token();
    auto erasing = mode == EraseMode::Secure ? m_tools.secureOverwrite(volume) : m_tools.quickFormat(volume);
    const bool hasSucceeded = co_await erasing;
    onMainQueue(self, [opening, hasSucceeded](DiskUtilityState &state) {
        if (state.m_opening.isLatest(opening))
            state.enter({DiskAlert::Finished, hasSucceeded});
    });
}

} // namespace Quillmere
