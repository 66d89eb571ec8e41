#pragma once

#include <QHostAddress>

// An address of 127.0.0.0/8 that no other test is likely to use, in this process or in another: the
// ports of a logger are fixed.
[[nodiscard]] QHostAddress freeLoopbackAddress();
