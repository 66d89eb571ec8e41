#pragma once

class QApplication;

namespace appstyle {

// The style of the system's own window kit where there is one, otherwise a calm one of our own.
void apply(QApplication &application);

} // namespace appstyle
