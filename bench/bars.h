#pragma once

#include <cstdio>

// Prints measured figures and whether each meets its bar.
struct Bars
{
    bool allMet = true;

    void judge(const char *what, double value, double bar, const char *unit)
    {
        print(what, value, bar, unit, value <= bar);
    }
    void judgeAtLeast(const char *what, double value, double bar, const char *unit)
    {
        print(what, value, bar, unit, value >= bar);
    }

private:
    void print(const char *what, double value, double bar, const char *unit, bool isMet)
    {
        allMet = allMet && isMet;
        std::printf("%-44s %10.2f %-4s bar %.2f %s\n", what, value, unit, bar,
                    isMet ? "met" : "MISSED");
    }
};
