#pragma once

// What the command line programs end with.
enum ExitCode {
    AllDone = 0,
    DoneWithErrors = 1, // all files were handled, some with errors reported
    SomeFileFailed = 2,
    UsageError = 64, // EX_USAGE of sysexits
    Cancelled = 130  // 128 + SIGINT
};
