#pragma once

#include <QStringList>

// What Qt has printed since the last call. From any thread.
QStringList takeMessages();
