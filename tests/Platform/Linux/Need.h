#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <gtest/gtest.h>

/// What a machine cannot do is named, and is a failure where everything must run. Nothing happens for an empty reason.
#define QUILLMERE_NEED(reasonWhyNot)                                                                                   \
    do {                                                                                                               \
        const QByteArray reason = (reasonWhyNot);                                                                      \
        if (!reason.isEmpty() && qEnvironmentVariableIsSet("CI"))                                                      \
            FAIL() << reason.constData();                                                                              \
        if (!reason.isEmpty())                                                                                         \
            GTEST_SKIP() << reason.constData();                                                                        \
    } while (false)
