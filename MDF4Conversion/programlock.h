#pragma once

class QLockFile;

// Takes a lock that lives as long as the program that holds it. One whose program has ended gives
// way, also one that was ended before it had written its name into the lock; that is seen after a
// third of a second. Otherwise false, and the lock tells its error.
[[nodiscard]] bool takeProgramLock(QLockFile &lock);
